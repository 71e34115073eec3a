#include "app/cli/DRJsonOutput.h"

#include "platform/core/DRDates.h"
#include "platform/core/DRLog.h"

#include <QJsonDocument>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

QString layoutName(DRIPhoneBackupFiles::Layout layout)
{
    switch (layout) {
    case DRIPhoneBackupFiles::Layout::HashedNames:
        return u"hashedNames"_s;
    case DRIPhoneBackupFiles::Layout::Database:
        return u"database"_s;
    case DRIPhoneBackupFiles::Layout::Unknown:
        break;
    }
    return u"unknown"_s;
}

/// The same document with the characters that could steer a terminal written as "\\uXXXX". JSON itself asks that only of those
/// below U+0020.
QByteArray withEscapes(const QByteArray& json)
{
    QString escaped;
    const QString text = QString::fromUtf8(json);
    escaped.reserve(text.size());
    for (const QChar character : text) {
        if (character != u'\n' && withoutControlCharacters(character) != character) {
            escaped += u"\\u%1"_s.arg(uint{character.unicode()}, 4, 16, QChar(u'0'));
        } else {
            escaped += character;
        }
    }
    return escaped.toUtf8();
}

} // namespace

QJsonValue DRJsonOutput::text(const QString& text)
{
    return text.isNull() ? QJsonValue(QJsonValue::Null) : QJsonValue(text);
}

QJsonValue DRJsonOutput::time(const QDateTime& date)
{
    return text(DRDates::rfc3339(date));
}

QJsonValue DRJsonOutput::bytes(quint64 bytes)
{
    static constexpr quint64 kMost = std::numeric_limits<qint64>::max();
    return static_cast<qint64>(std::min(bytes, kMost));
}

QJsonObject DRJsonOutput::backup(const DRListedBackup& backup)
{
    const auto& entry = *backup.entry;
    return {
        {u"path"_s, entry.backupPath()},
        {u"deviceName"_s, text(entry.deviceName())},
        {u"displayName"_s, text(entry.displayName())},
        {u"guid"_s, text(entry.guid())},
        {u"imei"_s, text(entry.imei())},
        {u"serialNumber"_s, text(entry.serialNumber())},
        {u"productType"_s, text(entry.productType())},
        {u"productVersion"_s, text(entry.productVersion())},
        {u"majorProductVersion"_s, entry.majorProductVersion()},
        {u"iTunesVersion"_s, text(entry.iTunesVersion())},
        {u"lastBackupDate"_s, time(entry.lastBackupDate())},
        {u"encrypted"_s, entry.isEncrypted()},
        {u"usable"_s, backup.reason.isNull()},
        {u"reason"_s, text(backup.reason)},
        {u"layout"_s, layoutName(backup.layout)},
    };
}

QByteArray DRJsonOutput::document(const QJsonObject& object)
{
    return withEscapes(QJsonDocument(object).toJson(QJsonDocument::Indented));
}

QByteArray DRJsonOutput::line(const QJsonObject& object)
{
    return withEscapes(QJsonDocument(object).toJson(QJsonDocument::Compact)) + '\n';
}
