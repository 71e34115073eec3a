#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include "app/cli/DRBackupList.h"

/// The values of the program's JSON: absent texts and dates are null, times RFC 3339 in UTC, bytes integers.
namespace DRJsonOutput {

[[nodiscard]] QJsonValue text(const QString& text);
[[nodiscard]] QJsonValue time(const QDateTime& date);

/// Saturates at the largest integer that JSON readers keep exactly as a signed 64-bit number.
[[nodiscard]] QJsonValue bytes(quint64 bytes);

/// A backup as `backups` lists it.
[[nodiscard]] QJsonObject backup(const DRListedBackup& backup);

/// A whole document, indented, and one object on a line of its own; both end with a line feed.
[[nodiscard]] QByteArray document(const QJsonObject& object);
[[nodiscard]] QByteArray line(const QJsonObject& object);

} // namespace DRJsonOutput
