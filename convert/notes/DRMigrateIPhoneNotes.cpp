#include "convert/notes/DRMigrateIPhoneNotes.h"

#include "convert/notes/DRImportedNote.h"
#include "convert/notes/DRNoteText.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "model/iphone_backup/DRIPhoneBackupFiles.h"
#include "platform/core/DRDates.h"
#include "platform/core/DRLog.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kNotesDatabase = u"HomeDomain-Library/Notes/notes.sqlite"_s;

DRImportedNote noteFromRows(const DRResultSet& note, const DRResultSet& body)
{
    return {
        .title = convertNoteHTMLToText(note.string("ZTITLE")),
        .summary = note.string("ZSUMMARY"),
        .content = convertNoteHTMLToText(body.string("ZCONTENT")),
        .creationDate = DRDates::fromReferenceSeconds(note.real("ZCREATIONDATE")),
        .modificationDate = DRDates::fromReferenceSeconds(note.real("ZMODIFICATIONDATE")),
    };
}

} // namespace

bool DRMigrateIPhoneNotes::load()
{
    if (sourcePath().isEmpty()) {
        return false;
    }
    if (DRIPhoneBackupFiles::pathOfBackedUpFile(sourcePath(), kNotesDatabase).isEmpty()) {
        setReport({.isNotInBackup = true});
        return false;
    }
    auto database =
        DRIPhoneBackupFiles::openBackedUpDatabase(sourcePath(), kNotesDatabase, services().folders.temporary);
    if (!database) {
        qCWarning(lcMigrate, "The notes database of the backup cannot be opened");
        return false;
    }
    return readNotes(**database);
}

bool DRMigrateIPhoneNotes::readNotes(DRDatabase& database)
{
    DREntryList notes;
    DRMigrateReport outcome;
    qint64 withoutBody = 0;
    DRResultSet note = database.executeQuery(u"SELECT * FROM ZNOTE"_s);
    DRStatement bodyOfNote = database.prepare(u"SELECT * FROM ZNOTEBODY WHERE ZOWNER=?"_s);
    while (note.next()) {
        DRResultSet body = bodyOfNote.query({note.integer("Z_PK")});
        if (body.next()) {
            notes.emplace_back(noteFromRows(note, body));
        } else if (body.hasFailed()) {
            outcome.skipped.push_back({.what = u"A note"_s, .why = u"its text in the backup cannot be read"_s});
        } else {
            ++withoutBody;
        }
    }
    if (note.hasFailed()) {
        qCWarning(lcMigrate, "The notes of the backup cannot be read: %ls",
                  qUtf16Printable(database.lastErrorMessage()));
        if (notes.empty()) {
            return false;
        }
        outcome.skipped.push_back({.what = u"Some notes"_s, .why = u"the backup's notes database is damaged"_s});
    }
    if (withoutBody > 0) {
        outcome.warnings.append(u"Notes without any text, which are not moved: %1"_s.arg(withoutBody));
    }
    outcome.found = static_cast<qint64>(notes.size());
    setEntries(std::move(notes));
    setReport(std::move(outcome));
    return true;
}
