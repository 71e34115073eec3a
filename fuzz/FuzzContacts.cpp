// Contacts with their pictures, and calls, from the iPhone's three databases into the files of the phone's contacts app.

#include "app/sample/DRSampleContacts.h"
#include "convert/contacts/DRMigrateAndroidAddressBook.h"
#include "convert/contacts/DRMigrateIPhoneAddressBook.h"
#include "convert/contacts/DRVCardFile.h"
#include "fuzz/DRFuzzMove.h"

using namespace Qt::StringLiterals;

namespace {

const QString kPacketID = u"com.vornmobile.android.contactsimport"_s;

/// Saves as the program does and reads the cards back.
void checkCards(const DRMigrateIPhoneAddressBook& source, DRMigrateAndroidAddressBook& phone, const QString& app)
{
    require(phone.mergeDataFrom(source), "contacts are merged");
    require(phone.save(), "contacts are saved");
    const DRVCardFile::Contents cards = DRVCardFile::read(app + u"/f/full_backup_vcard.vcf"_s);
    require(cards.isReadable && !cards.isDamaged, "the file of cards is sound");
    require(cards.cards.size() == source.entries()->size(), "each contact is one card");
}

} // namespace

void fuzzOne(QByteArrayView bytes)
{
    static DRFuzzBackup backup(addIPhoneContacts, {u"HomeDomain-Library/AddressBook/AddressBook.sqlitedb"_s,
                                                   u"HomeDomain-Library/AddressBook/AddressBookImages.sqlitedb"_s,
                                                   u"WirelessDomain-Library/CallHistory/call_history.db"_s});
    DRFuzzInput input(bytes);
    backup.edit(input);
    DRFuzzMove move;
    const auto source = move.load<DRMigrateIPhoneAddressBook>(backup);
    if (!source) {
        return;
    }
    const DRFuzzFolder folder;
    folder.write(u"%1/apps/%1/_manifest"_s.arg(kPacketID), "1\n");
    DRMigrateAndroidAddressBook phone(move.services());
    phone.setTargetPath(folder.path({}));
    phone.setPacketID(kPacketID);
    checkCards(*source, phone, folder.path(u"%1/apps/%1"_s.arg(kPacketID)));
}
