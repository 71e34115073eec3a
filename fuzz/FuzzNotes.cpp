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
    editOneOf(bytes, backup, phone);
    DRFuzzMove move;
    const auto source = move.load<DRMigrateIPhoneNotes>(backup);
    if (!source) {
        return;
    }
    const auto before = phone.rowCount(u"notes"_s);
    const auto report = move.merge<DRMigrateAndroidNotes>(*source, phone.path(), phone.packetID());
    const auto after = phone.rowCount(u"notes"_s);
    if (report && before && after) {
        require(*after == *before + report->written, "each note is a row, and the phone's own stay");
    }
}
