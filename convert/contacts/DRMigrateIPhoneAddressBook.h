#pragma once

#include "convert/contacts/DRImportedCall.h"
#include "model/backup_entry/DRMigrateDataType.h"

#include <vector>

class DRContactPictures;
class DRDatabase;

/// Reads the contacts of an iPhone backup with their pictures, and its call history. Entries are `DRContactCard`, one for
/// each person, in the order of the rows.
class DRMigrateIPhoneAddressBook final : public DRMigrateDataType {
public:
    using DRMigrateDataType::DRMigrateDataType;

    /// Reads "HomeDomain-Library/AddressBook/AddressBook.sqlitedb", then where the pictures are, then the call history.
    /// False when the backup does not hold the address book or it cannot be read; the calls are read all the same.
    /// Missing pictures or a missing call history are no failure; unreadable ones are told in the report.
    [[nodiscard]] bool load() override;

    /// The calls in the order of their rows. To be read when no load is running.
    [[nodiscard]] const std::vector<DRImportedCall>& callLog() const { return m_callLog; }
    void setCallLog(std::vector<DRImportedCall> calls) { m_callLog = std::move(calls); }

private:
    [[nodiscard]] bool readContacts(DREntryList& cards, DRMigrateReport& outcome) const;
    [[nodiscard]] bool readPersons(DRDatabase& database, DREntryList& cards, DRMigrateReport& outcome) const;
    [[nodiscard]] QHash<qint64, qint64> findPictures(DRMigrateReport& outcome) const;
    void readCalls(DRMigrateReport& outcome);

    std::vector<DRImportedCall> m_callLog;
};
