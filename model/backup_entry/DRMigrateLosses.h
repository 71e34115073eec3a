#pragma once

#include "model/backup_entry/DRMigrateReport.h"

#include <QString>

#include <vector>

/// Collects what could not be moved, for the report. The first are named one by one, the rest is counted: a database that
/// refuses everything must not make a summary of a million lines.
class DRMigrateLosses {
public:
    /// `nameOfMany`: what the counted rest is called, such as "messages and attachments". `fileKind`: of media files, see
    /// `DRMigrateSkippedItem`.
    explicit DRMigrateLosses(QString nameOfMany, quint32 fileKind = 0);

    void add(DRMigrateSkippedItem item);

    /// Adds another collection's losses to these.
    void addAll(const DRMigrateLosses& others);

    /// Puts them all into the report.
    void tell(DRMigrateReport& report) const;

private:
    QString m_nameOfMany;
    quint32 m_fileKind;
    std::vector<DRMigrateSkippedItem> m_named;
    qint64 m_furtherCount = 0;
};
