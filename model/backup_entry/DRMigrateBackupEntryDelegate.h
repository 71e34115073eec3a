#pragma once

class DRMigrateBackupEntry;
class DRMigrateDataType;

/// Is told when a data type of an entry has finished a step, successfully or not. Main thread. All operations are
/// optional.
class DRMigrateBackupEntryDelegate {
public:
    virtual ~DRMigrateBackupEntryDelegate() = default;

    virtual void dataTypeHasBeenLoaded(DRMigrateBackupEntry&, DRMigrateDataType&) {}
    virtual void dataTypeHasBeenMerged(DRMigrateBackupEntry&, DRMigrateDataType&) {}
    virtual void dataTypeHasBeenSaved(DRMigrateBackupEntry&, DRMigrateDataType&) {}
};
