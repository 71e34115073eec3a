#pragma once

#include "model/backup_entry/DRMigrateDataType.h"

class DRDatabase;

/// Reads the notes of an iPhone backup. Entries are `DRImportedNote`, in the order of the note rows.
class DRMigrateIPhoneNotes final : public DRMigrateDataType {
public:
    using DRMigrateDataType::DRMigrateDataType;

    /// Reads "HomeDomain-Library/Notes/notes.sqlite", tables `ZNOTE` and `ZNOTEBODY`. A note without a body row is left
    /// out. False when the backup does not hold the database or it cannot be read.
    [[nodiscard]] bool load() override;

private:
    [[nodiscard]] bool readNotes(DRDatabase& database);
};
