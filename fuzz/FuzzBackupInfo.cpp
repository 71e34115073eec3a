// The property lists that describe a backup: whatever "Info.plist" and "Manifest.plist" hold, the backup can be shown.

#include "fuzz/DRFuzzFolder.h"
#include "fuzz/DRFuzzInput.h"
#include "fuzz/FuzzTarget.h"
#include "model/iphone_backup/DRMigrateBackupDiscovery.h"
#include "tests/support/DRTestServices.h"

using namespace Qt::StringLiterals;

/// The input is Info.plist and Manifest.plist, the first with its length in 16 bits before it.
void fuzzOne(QByteArrayView bytes)
{
    const DRTestServices test;
    const DRFuzzFolder folder;
    DRFuzzInput input(bytes);
    const QString info = folder.write(u"backup/Info.plist"_s, input.take(input.takeNumber<quint16>()));
    folder.write(u"backup/Manifest.plist"_s, input.takeRest());

    const auto entry = DRMigrateUtils::iPhoneBackupEntryAtFolder(folder.path(u"backup"_s), test.services);
    const auto entries = DRMigrateUtils::iPhoneBackupEntriesAtPath(folder.path({}), test.services);
    require(entries.size() == (entry ? 1 : 0), "a folder is listed when it is a backup");
    if (!entry) {
        return;
    }
    require(!entry->isUsable() || !entry->isEncrypted(), "what is encrypted cannot be used");
    require(DRMigrateUtils::latestBackupEntriesFromList(entries).size() <= 1, "one backup is the latest of itself");
}
