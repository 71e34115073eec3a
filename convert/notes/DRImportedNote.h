#pragma once

#include <QDateTime>
#include <QString>

class DRClock;
class DRDatabase;

/// One note, on its way from the iPhone to the phone.
struct DRImportedNote {
    QString title;              ///< plain text
    QString summary;            ///< the iPhone's summary as it stands; not written to the phone
    QString content;            ///< plain text
    QDateTime creationDate;     ///< written as the current time when invalid
    QDateTime modificationDate; ///< written as the current time when invalid

    bool operator==(const DRImportedNote&) const = default;

    /// Appends the note to the `notes` table of the phone's notes app as a new local note that is not yet synchronised.
    /// False when the insert fails, which is logged.
    bool insertNoteIntoAndroidDatabase(DRDatabase& database, const DRClock& clock) const;
};
