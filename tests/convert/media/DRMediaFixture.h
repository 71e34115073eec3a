#pragma once

#include "model/backup_entry/DRMigrateDataType.h"
#include "platform/device/DRDCFile.h"
#include "tests/convert/DRConverterFixture.h"

/// An iPhone backup with databases and media files.
struct DRMediaFixture : DRConverterFixture {
    /// Makes a database of the backup from a script; none from an empty one.
    [[nodiscard]] bool makeDatabase(const QString& domainPath, const QString& sql) const
    {
        return sql.isEmpty() || run(backedUp(domainPath), QStringLiteral("BEGIN;") + sql + QStringLiteral("COMMIT;"));
    }

    /// Puts files into the backup; each holds its own path.
    [[nodiscard]] bool addFiles(const QStringList& domainPaths) const
    {
        for (const QString& domainPath : domainPaths) {
            if (!writeFile(backedUp(domainPath), domainPath.toUtf8())) {
                return false;
            }
        }
        return true;
    }
};

/// A line for each file: its name on the phone, its kind and what it holds.
inline QStringList linesOf(const DRMigrateDataType& media)
{
    QStringList lines;
    const DREntries entries = media.entries();
    for (const DRDCFilePointer* entry : recordsOf<DRDCFilePointer>(*entries)) {
        QFile file((*entry)->sourcePath());
        const QByteArray content = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
        lines << QStringLiteral("%1 0x%2 = %3")
                     .arg((*entry)->metadataForKey(QLatin1StringView(DRDCFile::kTargetFileName)).toString())
                     .arg((*entry)->fileKind(), 2, 16, QChar(u'0'))
                     .arg(QString::fromUtf8(content));
    }
    return lines;
}

/// A line for each loss that the report tells, the kind of the file last.
inline QStringList lossesOf(const DRMigrateDataType& media)
{
    QStringList lines = media.report().warnings;
    for (const DRMigrateSkippedItem& item : media.report().skipped) {
        lines << QStringLiteral("%1: %2 (0x%3)").arg(item.what, item.why).arg(item.fileKind, 2, 16, QChar(u'0'));
    }
    return lines;
}
