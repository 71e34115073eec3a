// Bookmarks, from the iPhone's database into those of the browser and into Chrome's file.

#include "app/sample/DRSampleBookmarks.h"
#include "app/sample/DRSamplePhoneBrowser.h"
#include "convert/bookmarks/DRMigrateAndroidBookmarks.h"
#include "convert/bookmarks/DRMigrateChromeBookmarks.h"
#include "convert/bookmarks/DRMigrateIPhoneBookmarks.h"
#include "fuzz/DRFuzzMove.h"

using namespace Qt::StringLiterals;

void fuzzOne(QByteArrayView bytes)
{
    static DRFuzzBackup backup(addIPhoneBookmarks, {u"HomeDomain-Library/Safari/Bookmarks.db"_s});
    static DRFuzzPhone phone(addPhoneBrowser, u"com.android.browser"_s, u"db/browser2.db"_s);
    DRFuzzMove move;
    const auto source = move.moveRows<DRMigrateIPhoneBookmarks, DRMigrateAndroidBookmarks>(
        bytes, backup, phone, {u"bookmarks"_s},
        [](const DRMigrateReport& report) { return report.written + report.counts.at(u"folders"_s); });
    if (source) {
        const DRFuzzFolder folder;
        static_cast<void>(
            move.merge<DRMigrateChromeBookmarks>(*source, folder.path(u"work"_s), u"com.android.chrome"_s));
    }
}
