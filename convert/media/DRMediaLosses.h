#pragma once

#include "model/backup_entry/DRMigrateLosses.h"

#include <QString>

/// Collects the files that cannot be moved, for the report: photos, videos and all others, each kind for itself, since it
/// may have been left out by choice.
class DRMediaLosses {
public:
    DRMediaLosses();

    /// `filename`: as the iPhone calls it, may be empty. `fileKind`: see DRMigrateFileKinds.h.
    void add(const QString& filename, quint32 fileKind, const QString& why);

    /// Names them all in the report.
    void tell(DRMigrateReport& report) const;

private:
    [[nodiscard]] DRMigrateLosses& lossesOf(quint32 fileKind);

    DRMigrateLosses m_photos;
    DRMigrateLosses m_videos;
    DRMigrateLosses m_others;
};
