#include "convert/notes/DRMigrateIPhoneNotes.h"

#include "convert/notes/DRImportedNote.h"
#include "convert/notes/DRNoteText.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "model/iphone_backup/DRIPhoneBackupFiles.h"
#include "platform/core/DRDates.h"
#include "platform/core/DRLog.h"

#include <QHash>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kNotesDatabase = u"HomeDomain-Library/Notes/notes.sqlite"_s;

/// The HTML of the first body row of each note, by the note's key.
struct Bodies {
    QHash<qint64, QString> htmlByOwner;
    bool isComplete = true;
};

/// Read in one go: a database without an index on the owner would otherwise be searched once per note.
Bodies readBodies(DRDatabase& database)
{
    Bodies bodies;
    DRResultSet body = database.executeQuery(u"SELECT * FROM ZNOTEBODY"_s);
    while (body.next()) {
        const qint64 owner = body.integer("ZOWNER");
        if (!body.isNull("ZOWNER") && !bodies.htmlByOwner.contains(owner)) {
            bodies.htmlByOwner.insert(owner, body.string("ZCONTENT"));
        }
    }
    bodies.isComplete = !body.hasFailed();
    return bodies;
}

DRImportedNote noteFromRow(const DRResultSet& note, const QString& bodyHtml)
{
    return {
        .title = convertNoteHTMLToText(note.string("ZTITLE")),
        .summary = note.string("ZSUMMARY"),
        .content = convertNoteHTMLToText(bodyHtml),
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
    if (!DRIPhoneBackupFiles::holds(sourcePath(), kNotesDatabase)) {
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
    Bodies bodies = readBodies(database);
    DRResultSet note = database.executeQuery(u"SELECT * FROM ZNOTE"_s);
    while (note.next()) {
        const auto body = bodies.htmlByOwner.constFind(note.integer("Z_PK"));
        if (body == bodies.htmlByOwner.cend()) {
            ++withoutBody;
            continue;
        }
        notes.emplace_back(noteFromRow(note, *body));
    }
    if (note.hasFailed() || !bodies.isComplete) {
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
