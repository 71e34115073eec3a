#include "convert/DRMigrateConverters.h"

#include "convert/bookmarks/DRMigrateAndroidBookmarks.h"
#include "convert/bookmarks/DRMigrateChromeBookmarks.h"
#include "convert/bookmarks/DRMigrateIPhoneBookmarks.h"
#include "convert/calendar/DRMigrateAndroidCalendar.h"
#include "convert/calendar/DRMigrateIPhoneCalendar.h"
#include "convert/contacts/DRMigrateAndroidAddressBook.h"
#include "convert/contacts/DRMigrateIPhoneAddressBook.h"
#include "convert/media/DRMigrateAndroidMusic.h"
#include "convert/media/DRMigrateAndroidPhotos.h"
#include "convert/media/DRMigrateAndroidVoiceMemos.h"
#include "convert/media/DRMigrateIPhoneMusic.h"
#include "convert/media/DRMigrateIPhonePhotos.h"
#include "convert/media/DRMigrateIPhoneVoiceMemos.h"
#include "convert/media/DRMP4VideoCleaner.h"
#include "convert/messages/DRMigrateAndroidMessages.h"
#include "convert/messages/DRMigrateIPhoneMessages.h"
#include "convert/notes/DRMigrateAndroidNotes.h"
#include "convert/notes/DRMigrateIPhoneNotes.h"
#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "model/backup_entry/DRMigrateDataTypeRegistry.h"
#include "model/backup_entry/DRMigrateServices.h"

namespace {

template <typename T> std::shared_ptr<DRMigrateDataType> make(const DRMigrateServices& services)
{
    return std::make_shared<T>(services);
}

} // namespace

void registerMigrateConverters(DRMigrateDataTypeRegistry& registry)
{
    using namespace DRMigrateKeys;

    registry.registerIPhoneType(kContacts, make<DRMigrateIPhoneAddressBook>);
    registry.registerPacketType(kContactsImportPacket, make<DRMigrateAndroidAddressBook>);
    registry.registerPacketType(kPhonebookPacket, make<DRMigrateAndroidAddressBook>);

    registry.registerIPhoneType(kTextMessages, make<DRMigrateIPhoneMessages>);
    registry.registerPacketType(kTelephonyPacket, make<DRMigrateAndroidMessages>);

    registry.registerIPhoneType(kNotes, make<DRMigrateIPhoneNotes>);
    registry.registerPacketType(kNotesPacket, make<DRMigrateAndroidNotes>);

    registry.registerIPhoneType(kCalendar, make<DRMigrateIPhoneCalendar>);
    registry.registerPacketType(kCalendarPacket, make<DRMigrateAndroidCalendar>);

    registry.registerIPhoneType(kBookmarks, make<DRMigrateIPhoneBookmarks>);
    registry.registerPacketType(kBrowserPacket, make<DRMigrateAndroidBookmarks>);
    registry.registerPacketType(kChromePacket, make<DRMigrateChromeBookmarks>);

    registry.registerIPhoneType(kMusic, make<DRMigrateIPhoneMusic>);
    registry.registerMediaType(kMusic, make<DRMigrateAndroidMusic>);

    registry.registerIPhoneType(kVoiceMemos, make<DRMigrateIPhoneVoiceMemos>);
    registry.registerMediaType(kVoiceMemos, make<DRMigrateAndroidVoiceMemos>);

    registry.registerIPhoneType(kImages, make<DRMigrateIPhonePhotos>);
    registry.registerMediaType(kImages, [](const DRMigrateServices& services) -> std::shared_ptr<DRMigrateDataType> {
        return std::make_shared<DRMigrateAndroidPhotos>(
            services, std::make_shared<const DRMP4VideoCleaner>(services.folders.temporary));
    });
}
