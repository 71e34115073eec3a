#pragma once

#include "model/media/DRMigrateMediaDataType.h"

class DRDatabase;

/// Reads the voice memos of an iPhone backup. Entries are `DRDCFilePointer`, one for each recording whose file is in the
/// backup, in the order of the rows, each with its kind, its "TargetFileName" and its "PersistentId".
class DRMigrateIPhoneVoiceMemos final : public DRMigrateMediaDataType {
public:
    using DRMigrateMediaDataType::DRMigrateMediaDataType;

    /// Reads "MediaDomain-Media/Recordings/Recordings.db". Recordings whose file is not in the backup are left out, which
    /// the report tells. False when the backup does not hold the database or it cannot be read.
    [[nodiscard]] bool load() override;

private:
    [[nodiscard]] bool readRecordings(DRDatabase& database);
};
