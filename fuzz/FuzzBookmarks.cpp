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
    editOneOf(bytes, backup, phone);
    DRFuzzMove move;
    const auto source = move.load<DRMigrateIPhoneBookmarks>(backup);
    if (!source) {
        return;
    }
    const auto before = phone.rowCount(u"bookmarks"_s);
    const auto report = move.merge<DRMigrateAndroidBookmarks>(*source, phone.path(), phone.packetID());
    const auto after = phone.rowCount(u"bookmarks"_s);
    if (report && before && after) {
        require(*after == *before + report->written + report->counts.at(u"folders"_s),
                "each bookmark and folder is a row, and the phone's own stay");
    }
    const DRFuzzFolder folder;
    static_cast<void>(move.merge<DRMigrateChromeBookmarks>(*source, folder.path(u"work"_s), u"com.android.chrome"_s));
}
