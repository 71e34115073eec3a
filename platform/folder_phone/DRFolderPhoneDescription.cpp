#include "platform/folder_phone/DRFolderPhoneDescription.h"

#include "platform/core/DRFileDescriptor.h"
#include "platform/core/DRFiles.h"
#include "platform/core/DRLog.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMaximumBytes = qint64{1024} * 1024;

std::optional<QJsonObject> readObject(const QString& path)
{
    const auto bytes = DRFiles::readRegularFile(path, kMaximumBytes);
    const QJsonDocument document = bytes ? QJsonDocument::fromJson(*bytes) : QJsonDocument();
    if (!document.isObject()) {
        return std::nullopt;
    }
    return document.object();
}

QString textOr(const QJsonValue& value, const QString& fallback)
{
    const QString text = value.toString();
    return text.isEmpty() ? fallback : text;
}

template <typename Number> Number numberOr(const QJsonValue& value, Number fallback)
{
    const qint64 number = value.toInteger(-1);
    const bool fits = number >= 0 && static_cast<quint64>(number) <= std::numeric_limits<Number>::max();
    return fits ? static_cast<Number>(number) : fallback;
}

} // namespace

std::optional<DRFolderPhoneDescription> DRFolderPhoneDescription::readFrom(const QString& folder)
{
    DRFolderPhoneDescription description;
    description.marketingName = textOr(QFileInfo(folder).fileName(), description.marketingName);
    const QString path = folder + u"/phone.json"_s;
    if (!statusWithoutFollowing(path)) {
        return description;
    }
    const auto object = readObject(path);
    if (!object) {
        qCWarning(lcMigrate) << "The phone's description is not a readable JSON object:" << path;
        return std::nullopt;
    }
    description.marketingName = textOr(object->value("marketingName"_L1), description.marketingName);
    description.androidBaseVersion = numberOr(object->value("androidBaseVersion"_L1), description.androidBaseVersion);
    description.appProductRevision = textOr(object->value("appProductRevision"_L1), description.appProductRevision);
    description.memoryUsableCapacity =
        numberOr(object->value("memoryUsableCapacity"_L1), description.memoryUsableCapacity);
    return description;
}
