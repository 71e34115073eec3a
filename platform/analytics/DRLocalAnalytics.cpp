#include "platform/analytics/DRLocalAnalytics.h"

#include "platform/core/DRClock.h"
#include "platform/core/DRFiles.h"
#include "platform/core/DRLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMaximumBytes = 1048576;

/// Makes the folder for its owner alone. One that exists stays as it is.
bool makePrivateFolder(const QString& folder)
{
    if (QFileInfo(folder).isDir()) {
        return true;
    }
    return QDir().mkpath(folder) &&
           QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

bool renameWhenFull(const QString& path)
{
    return QFileInfo(path).size() <= kMaximumBytes || DRFiles::replace(path, path + u".old"_s);
}

bool appendLine(const QString& path, const QByteArray& line)
{
    QFile file(path);
    return file.open(QIODevice::Append | QIODevice::WriteOnly, QFile::ReadOwner | QFile::WriteOwner) &&
           file.write(line) == line.size() && file.flush();
}

} // namespace

DRLocalAnalytics::DRLocalAnalytics(QString path, const DRClock& clock) : m_path(std::move(path)), m_clock(clock) {}

void DRLocalAnalytics::trackEvent(const QString& category, const QString& action, const QString& label)
{
    QJsonObject event{{u"category"_s, category}, {u"action"_s, action}};
    if (!label.isEmpty()) {
        event.insert(u"label"_s, label);
    }
    append(event);
}

void DRLocalAnalytics::trackPageView(const QStringList& components)
{
    append({{u"page"_s, components.join(u'/')}});
}

void DRLocalAnalytics::append(const QJsonObject& event)
{
    if (m_failed) {
        return;
    }
    QJsonObject stamped = event;
    stamped.insert(u"time"_s, m_clock.now().toUTC().toString(Qt::ISODateWithMs));
    const QByteArray line = QJsonDocument(stamped).toJson(QJsonDocument::Compact) + '\n';
    if (makePrivateFolder(QFileInfo(m_path).path()) && renameWhenFull(m_path) && appendLine(m_path, line)) {
        return;
    }
    m_failed = true;
    qCWarning(lcMigrate, "Usage events cannot be written to %ls; the migration goes on without them.",
              qUtf16Printable(m_path));
}
