#pragma once

#include "model/backup_entry/DRMigrateDataType.h"

/// Reads the messages of an iPhone backup with where their attachments are. Entries are `DRImportedChat`: first the
/// conversations of the newer layout, then those of the older one, which one database may hold both.
class DRMigrateIPhoneMessages final : public DRMigrateDataType {
public:
    using DRMigrateDataType::DRMigrateDataType;

    /// Reads "HomeDomain-Library/SMS/sms.db". An attachment whose file is not in the backup is dropped and told in the
    /// report. False when the backup does not hold the database or it cannot be read.
    [[nodiscard]] bool load() override;
};
