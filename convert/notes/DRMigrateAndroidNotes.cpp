#include "convert/notes/DRMigrateAndroidNotes.h"

#include "convert/notes/DRImportedNote.h"
#include "convert/notes/DRNotesTemplate.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRTransaction.h"

#include <QFileInfo>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// How a note is called in the summary.
QString nameOf(const DRImportedNote& note)
{
    constexpr qsizetype kLongestName = 40;
    const QString title = note.title.simplified();
    return title.isEmpty() ? u"A note without a title"_s : u"Note “%1”"_s.arg(title.left(kLongestName));
}

} // namespace

DRMigrateAndroidNotes::Names DRMigrateAndroidNotes::names() const
{
    return {.app = u"The notes app"_s, .records = u"notes"_s};
}

bool DRMigrateAndroidNotes::mergeDataFrom(const DRMigrateDataType& source)
{
    const DREntries entries = source.entries();
    const auto notes = recordsOf<DRImportedNote>(*entries);
    DRMigrateReport outcome = report();
    outcome.found = static_cast<qint64>(notes.size());
    if (ignoreDataType()) {
        setReport(std::move(outcome));
        return true;
    }

    const QString path = pathInApp(u"db/note.db"_s);
    bool isMerged = prepareDatabase(path, outcome);
    if (isMerged) {
        auto database = DRDatabase::open(path, DRDatabase::Profile::Phone);
        isMerged = database && insertNotes(*database, notes, outcome);
    }
    setReport(std::move(outcome));
    return isMerged;
}

bool DRMigrateAndroidNotes::prepareDatabase(const QString& path, DRMigrateReport& outcome) const
{
    const auto hasNotes = DRDatabase::phoneDatabaseHolds(path, u"notes"_s);
    if (!hasNotes) {
        outcome.skipped.push_back(
            {.what = u"All notes"_s, .why = u"the phone's own cannot be read on this computer"_s});
        return false;
    }
    if (*hasNotes) {
        return true;
    }
    if (QFileInfo::exists(path)) {
        outcome.warnings.append(u"The notes on the phone cannot be read and are replaced by the new ones; the phone's "
                                "backup keeps them"_s);
    }
    return writeEmptyNotesDatabase(path);
}

bool DRMigrateAndroidNotes::insertNotes(DRDatabase& database,
                                        const std::vector<const DRImportedNote*>& notes,
                                        DRMigrateReport& outcome) const
{
    DRTransaction transaction(database);
    for (const DRImportedNote* note : notes) {
        if (!transaction.isOpen()) {
            break;
        }
        if (note->insertNoteIntoAndroidDatabase(database, services().clock)) {
            ++outcome.written;
            continue;
        }
        outcome.skipped.push_back({.what = nameOf(*note), .why = database.lastErrorMessage()});
    }
    if (!transaction.commit()) {
        outcome.written = 0;
        skipAll(outcome, database.lastErrorMessage());
        return false;
    }
    return true;
}
