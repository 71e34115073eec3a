#pragma once

#include "model/backup_entry/DRMigrateBackupEntry.h"

#include <memory>

class DRMigrateBackupEntryDelegate;

/// Keeps a delegate set at a backup entry, and clears it at the latest when destroyed, so that an entry whose work goes
/// on in the background never calls an observer that is gone.
class DRMGEntryObservation {
public:
    DRMGEntryObservation() = default;
    ~DRMGEntryObservation() { stop(); }
    DRMGEntryObservation(const DRMGEntryObservation&) = delete;
    DRMGEntryObservation& operator=(const DRMGEntryObservation&) = delete;

    /// Observes this entry instead of the one before.
    void start(const std::shared_ptr<DRMigrateBackupEntry>& entry, DRMigrateBackupEntryDelegate& delegate)
    {
        stop();
        entry->setDelegate(&delegate);
        m_entry = entry;
    }

    void stop()
    {
        if (const auto entry = m_entry.lock()) {
            entry->setDelegate(nullptr);
        }
        m_entry.reset();
    }

private:
    std::weak_ptr<DRMigrateBackupEntry> m_entry;
};
