// Notes, from the iPhone's database into the phone's: each is one row more.

#include "app/sample/DRSampleNotes.h"
#include "convert/notes/DRMigrateAndroidNotes.h"
#include "convert/notes/DRMigrateIPhoneNotes.h"
#include "fuzz/DRFuzzMove.h"

using namespace Qt::StringLiterals;

void fuzzOne(QByteArrayView bytes)
{
    static DRFuzzBackup backup(addIPhoneNotes, {u"HomeDomain-Library/Notes/notes.sqlite"_s});
    static DRFuzzPhone phone(addPhoneNotes, u"com.vornmobile.notes"_s, u"db/note.db"_s);
    DRFuzzMove().moveRows<DRMigrateIPhoneNotes, DRMigrateAndroidNotes>(
        bytes, backup, phone, {u"notes"_s}, [](const DRMigrateReport& report) { return report.written; });
}
