#include "convert/contacts/DRMigrateIPhoneAddressBook.h"

#include "convert/contacts/DRAddressBookValues.h"
#include "convert/contacts/DRCallHistory.h"
#include "convert/contacts/DRContactCard.h"
#include "convert/contacts/DRContactPictures.h"
#include "convert/contacts/DRPersonReader.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "model/iphone_backup/DRIPhoneBackupFiles.h"
#include "platform/contacts/DRCSContact.h"
#include "platform/core/DRLog.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kAddressBookDatabase = u"HomeDomain-Library/AddressBook/AddressBook.sqlitedb"_s;

std::optional<qint64> valueIn(const QHash<qint64, qint64>& rows, qint64 person)
{
    const auto found = rows.constFind(person);
    return found == rows.cend() ? std::nullopt : std::optional<qint64>(*found);
}

} // namespace

bool DRMigrateIPhoneAddressBook::load()
{
    if (sourcePath().isEmpty()) {
        return false;
    }
    DREntryList cards;
    DRMigrateReport outcome;
    const bool isRead = readContacts(cards, outcome);
    readCalls(outcome);
    outcome.isNotInBackup =
        !DRIPhoneBackupFiles::holds(sourcePath(), kAddressBookDatabase) && outcome.skipped.empty() && m_callLog.empty();
    if (!isRead && outcome.skipped.empty() && !outcome.isNotInBackup) {
        outcome.skipped.push_back(
            {.what = u"The call history"_s, .why = u"the backup holds no address book to go with it"_s});
    }
    outcome.found += static_cast<qint64>(cards.size());
    setEntries(std::move(cards));
    setReport(std::move(outcome));
    return isRead;
}

bool DRMigrateIPhoneAddressBook::readContacts(DREntryList& cards, DRMigrateReport& outcome) const
{
    if (!DRIPhoneBackupFiles::holds(sourcePath(), kAddressBookDatabase)) {
        return false;
    }
    auto database =
        DRIPhoneBackupFiles::openBackedUpDatabase(sourcePath(), kAddressBookDatabase, services().folders.temporary);
    if (database && readPersons(**database, cards, outcome)) {
        return true;
    }
    qCWarning(lcMigrate, "The address book of the backup cannot be read");
    outcome.skipped.push_back({.what = u"Contacts and calls"_s, .why = u"the backup's address book cannot be read"_s});
    return false;
}

bool DRMigrateIPhoneAddressBook::readPersons(DRDatabase& database, DREntryList& cards, DRMigrateReport& outcome) const
{
    const DRAddressBookValues values = DRAddressBookValues::read(database);
    const QHash<qint64, qint64> pictureRows = findPictures(outcome);
    QHash<qint64, std::size_t> positions; // of each person's card
    qint64 replacedCount = 0;
    DRResultSet person = database.executeQuery(u"SELECT * FROM ABPerson"_s);
    while (person.next()) {
        const qint64 id = person.integer("ROWID");
        const DRCSContact contact = contactFromPerson(person, values);
        DRContactCard card{.vCard = contact.vCardRepresentation(),
                           .name = contact.displayName(),
                           .pictureRow = valueIn(pictureRows, id)};
        if (const auto earlier = positions.constFind(id); earlier != positions.cend()) {
            ++replacedCount;
            cards[*earlier] = std::move(card);
            continue;
        }
        positions.insert(id, cards.size());
        cards.emplace_back(std::move(card));
    }
    outcome.found = replacedCount;
    if (replacedCount > 0) {
        outcome.skipped.push_back({.what = u"Contacts: %1"_s.arg(replacedCount),
                                   .why = u"later ones have the same numbers in the address book"_s});
    }
    if (person.hasFailed() && cards.empty()) {
        return false;
    }
    if (person.hasFailed() || !values.isComplete) {
        outcome.skipped.push_back(
            {.what = u"Some contacts, or parts of them"_s, .why = u"the backup's address book is damaged"_s});
    }
    return true;
}

QHash<qint64, qint64> DRMigrateIPhoneAddressBook::findPictures(DRMigrateReport& outcome) const
{
    if (!DRContactPictures::areInBackup(sourcePath())) {
        return {};
    }
    auto pictures = DRContactPictures::open(sourcePath(), services().folders.temporary);
    DRContactPictures::Rows found{.rowByPerson = {}, .isComplete = false};
    if (pictures) {
        found = pictures->rows();
    }
    if (!found.isComplete) {
        outcome.skipped.push_back(
            {.what = u"Pictures of contacts"_s, .why = u"the backup's database of them is damaged"_s});
    }
    return found.rowByPerson;
}

void DRMigrateIPhoneAddressBook::readCalls(DRMigrateReport& outcome)
{
    DRCallHistory::Reading reading = DRCallHistory::read(sourcePath(), services().folders.temporary);
    if (!reading.problem.isNull()) {
        outcome.skipped.push_back({.what = u"The call history, or a part of it"_s, .why = reading.problem});
    }
    outcome.counts[u"calls"_s] = static_cast<qint64>(reading.calls.size());
    setCallLog(std::move(reading.calls));
}
