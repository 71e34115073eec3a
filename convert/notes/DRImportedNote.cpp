#include "convert/notes/DRImportedNote.h"

#include "platform/core/DRClock.h"
#include "platform/core/DRLog.h"
#include "platform/sqlite/DRDatabase.h"

using namespace Qt::StringLiterals;

namespace {

/// The paper that the notes app draws behind a note.
const QString kBackground = u"com.vornmobile.notes:drawable/notes_background_grid_view_1"_s;

constexpr qint64 kNotDeleted = 0;
constexpr qint64 kDirty = 1; ///< not yet synchronised
constexpr qint64 kNoUpdateSequenceNumber = 0;
constexpr qint64 kLocalAccount = 1;

qint64 millisecondsOrNow(const QDateTime& date, const DRClock& clock)
{
    return date.isValid() ? date.toMSecsSinceEpoch() : clock.now().toMSecsSinceEpoch();
}

} // namespace

bool DRImportedNote::insertNoteIntoAndroidDatabase(DRDatabase& database, const DRClock& clock) const
{
    const QString empty = u""_s;
    const bool hasRun = database.executeUpdate(
        u"INSERT INTO notes (title, body, created, modified, deleted, meta_info, doodle_path, voice_path, background, "
        "isdirty, usn, account_id) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"_s,
        {title, content, millisecondsOrNow(creationDate, clock), millisecondsOrNow(modificationDate, clock),
         kNotDeleted, empty, empty, empty, kBackground, kDirty, kNoUpdateSequenceNumber, kLocalAccount});
    const bool isInserted = hasRun && database.changedRowCount() == 1; // a trigger may ignore the row
    if (!isInserted) {
        qCWarning(lcMigrate, "ERROR inserting note: %ls", qUtf16Printable(database.lastErrorMessage()));
    }
    return isInserted;
}
