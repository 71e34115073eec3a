#pragma once

#include "model/backup_entry/DRMigrateAppPacket.h"

class DRDatabase;
struct DRImportedNote;

/// Appends notes to the phone's notes app, in "db/note.db" of its packet.
class DRMigrateAndroidNotes final : public DRMigrateAppPacket {
public:
    using DRMigrateAppPacket::DRMigrateAppPacket;

    /// Writes every note of the source as a new row, in one transaction; notes that are there already, also the same
    /// ones, stay. A database that is missing, unreadable or without a `notes` table is replaced by an empty one. A
    /// note whose insert fails is reported and the others go on. False when the database cannot be opened or the
    /// transaction is lost.
    [[nodiscard]] bool mergeDataFrom(const DRMigrateDataType& source) override;

protected:
    [[nodiscard]] Names names() const override;

private:
    [[nodiscard]] bool prepareDatabase(const QString& path, DRMigrateReport& outcome) const;
    [[nodiscard]] bool
    insertNotes(DRDatabase& database, const std::vector<const DRImportedNote*>& notes, DRMigrateReport& outcome) const;
};
