#include "app/sample/DRSampleNotes.h"

#include "app/sample/DRSampleCoreData.h"
#include "app/sample/DRSampleGuid.h"
#include "app/sample/DRSampleIPhoneBackup.h"
#include "app/sample/DRSampleNoteTexts.h"
#include "app/sample/DRSamplePhone.h"
#include "convert/notes/DRNotesTemplate.h"
#include "platform/core/DRDates.h"
#include "platform/sqlite/DRDatabase.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 kSeed = 20140609;
constexpr int kNotesPerScale = 200;
constexpr qsizetype kLongNoteLength = 100'000;
constexpr int kDaysOfNotes = 390;
constexpr int kSecondsPerDay = 86'400;
constexpr qint64 kNoServerId = -4294967296; // what the iPhone writes for a note that no server knows

// Numbers of Core Data's entities, in the columns Z_ENT.
constexpr qint64 kAccountEntity = 1;
constexpr qint64 kNoteEntity = 2;
constexpr qint64 kBodyEntity = 3;
constexpr qint64 kStoreEntity = 4;

struct NoteDates {
    DRSqlValue created;
    DRSqlValue modified;
};

std::vector<DRSampleNote> composeNotes(DRSampleRandom& random, int count)
{
    const DRSampleNoteTexts texts;
    std::vector<DRSampleNote> notes = DRSampleNoteTexts::hardNotes();
    notes.push_back(texts.composeLong(random, kLongNoteLength));
    while (notes.size() < static_cast<std::size_t>(count)) {
        notes.push_back(texts.compose(random));
    }
    return notes;
}

/// Two moments before the backup's, in seconds since 2001 with thousandths. Never a whole number, which the column
/// would turn into an integer.
NoteDates datesFor(const DRSampleNote& note, const DRSampleSettings& settings, DRSampleRandom& random)
{
    if (!note.hasDates) {
        return {};
    }
    const int ageSeconds = kSecondsPerDay + random.below(kDaysOfNotes * kSecondsPerDay);
    const double end = DRDates::toReferenceSeconds(settings.moment);
    const double created = end - ageSeconds + (1 + random.below(999)) / 1000.0;
    return {.created = created, .modified = created + random.below(ageSeconds)};
}

QString noteGuid(qint64 number)
{
    return sampleGuid(u"note %1"_s.arg(number));
}

bool insertNotes(DRDatabase& database, const std::vector<DRSampleNote>& notes, const DRSampleSettings& settings)
{
    DRSampleRandom random(kSeed + 1);
    DRStatement insertNote = database.prepare(
        u"INSERT INTO ZNOTE (Z_PK, Z_ENT, Z_OPT, ZCONTAINSCJK, ZCONTENTTYPE, ZDELETEDFLAG, ZEXTERNALFLAGS, "
        "ZEXTERNALSEQUENCENUMBER, ZEXTERNALSERVERINTID, ZINTEGERID, ZISBOOKKEEPINGENTRY, ZBODY, ZSTORE, ZCREATIONDATE, "
        "ZMODIFICATIONDATE, ZGUID, ZSUMMARY, ZTITLE) VALUES (?1, ?2, 3, 0, 0, 0, 0, 0, ?3, ?1, 0, ?1, 1, ?4, ?5, ?6, ?7, ?8)"_s);
    DRStatement insertBody =
        database.prepare(u"INSERT INTO ZNOTEBODY (Z_PK, Z_ENT, Z_OPT, ZOWNER, ZCONTENT) VALUES (?1, ?2, 2, ?1, ?3)"_s);
    qint64 number = 0;
    for (const DRSampleNote& note : notes) {
        ++number;
        const auto [created, modified] = datesFor(note, settings, random);
        if (!insertNote.update(
                {number, kNoteEntity, kNoServerId, created, modified, noteGuid(number), note.summary, note.title}) ||
            !insertBody.update({number, kBodyEntity, note.content})) {
            return false;
        }
    }
    return true;
}

std::vector<DRSampleEntity> entities(qint64 noteCount)
{
    return {{kAccountEntity, u"Account"_s, 1},
            {kNoteEntity, u"Note"_s, noteCount},
            {kBodyEntity, u"NoteBody"_s, noteCount},
            {kStoreEntity, u"Store"_s, 1}};
}

struct PhoneNote {
    QStringView title;
    QStringView body;
    int daysAgo;
};
constexpr std::array kPhoneNotes{
    PhoneNote{u"Welcome to Notes", u"Tap here to write your first note.", 90},
    PhoneNote{u"Wi-Fi", u"Network \"Kiosk\", ask Maya for the password\nworks in the kitchen too", 41},
    PhoneNote{u"Caf\u00E9 \u2615", u"R\u00E9union mardi \U0001F600", 2},
};

bool insertPhoneNotes(DRDatabase& database, const DRSampleSettings& settings)
{
    DRStatement insert = database.prepare(u"INSERT INTO notes (title, body, created, modified, deleted, meta_info, "
                                          u"doodle_path, voice_path, background, isdirty, "
                                          "usn, account_id) VALUES (?1, ?2, ?3, ?3, 0, '', '', '', "
                                          "'com.vornmobile.notes:drawable/notes_background_grid_view_1', 1, 0, 1)"_s);
    return std::all_of(kPhoneNotes.begin(), kPhoneNotes.end(), [&](const PhoneNote& note) {
        const qint64 milliseconds = settings.moment.addDays(-note.daysAgo).toMSecsSinceEpoch();
        return insert.update({note.title.toString(), note.body.toString(), milliseconds});
    });
}

} // namespace

bool addIPhoneNotes(DRSampleIPhoneBackup& backup, const DRSampleSettings& settings)
{
    DRSampleRandom random(kSeed);
    const auto notes = composeNotes(random, kNotesPerScale * settings.scale);
    const auto rows = [&notes, &settings](DRDatabase& database) {
        return insertNotes(database, notes, settings) &&
               insertSampleCoreData(database, u"note 0"_s, entities(static_cast<qint64>(notes.size())));
    };
    return backup.addDatabase({.domain = u"HomeDomain"_s, .path = u"Library/Notes/notes.sqlite"_s}, {u"iphone_notes"_s},
                              rows);
}

bool addPhoneNotes(DRSamplePhone& phone, const DRSampleSettings& settings)
{
    const DRSampleApp app{.packetId = u"com.vornmobile.notes"_s, .versionCode = 14};
    return phone.addPacket(app, [&settings](const QString& appFolder) {
        const QString path = appFolder + u"/db/note.db"_s;
        if (!writeEmptyNotesDatabase(path)) {
            return false;
        }
        auto database = DRDatabase::open(path, DRDatabase::Profile::Phone);
        return database && insertPhoneNotes(*database, settings);
    });
}
