#pragma once

#include <map>
#include <vector>

#include <QString>
#include <QStringList>

/// Something that could not be moved, and why, for a person to read.
struct DRMigrateSkippedItem {
    QString what;
    QString why;
    quint32 fileKind = 0; ///< of a file of one kind (DRMigrateFileKinds.h): no loss for who did not want that kind

    bool operator==(const DRMigrateSkippedItem&) const = default;
};

/// What became of the records of one data type. Converters fill it while they load and merge; the summary shows it.
/// Nothing may be lost without a trace here.
struct DRMigrateReport {
    qint64 found = 0;                          ///< records that the source held
    qint64 written = 0;                        ///< records written into the packet or copied to the phone
    std::vector<DRMigrateSkippedItem> skipped; ///< records, attachments and files that were not written
    QStringList warnings;                      ///< losses that the phone's formats require, told before the restore
    std::map<QString, qint64> counts;          ///< further counts by their name, such as "messages" of "textMessages"
    bool isNotInBackup = false;                ///< source side: the backup does not hold this kind at all
    QString notAvailable; ///< source side: why there is nothing to move though nothing of the backup is lost, else null

    bool operator==(const DRMigrateReport&) const = default;
};
