#include "app/sample/DRSampleVoiceMemos.h"

#include "app/sample/DRSampleCoreData.h"
#include "app/sample/DRSampleIPhoneBackup.h"
#include "app/sample/DRSampleSound.h"
#include "platform/core/DRDates.h"
#include "platform/sqlite/DRDatabase.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 kSeed = 20140401;
constexpr qint64 kRecordingEntity = 1;
constexpr qint64 kSecondsBetween = 29 * 86'400 + 4'321;

struct Memo {
    QStringView root;     ///< how the iPhone writes the place of its files
    QStringView fileName; ///< empty: the time of recording, as the phone calls them
    QStringView label;    ///< empty for none
    int verses;
};
constexpr std::array kMemos{
    Memo{u"/var/mobile/", u"", u"Ik\u00E4v\u00E4 s\u00E4vel", 4},
    Memo{u"/var/mobile/", u"", u"", 2},
    Memo{u"~/", u"", u"\u00C5se om b\u00E5ten \u26F5", 6},
    Memo{u"/var/mobile/", u"Besprechung \u2013 Zo\u00EB.m4a", u"Besprechung \u2013 Zo\u00EB", 3},
    Memo{u"/var/mobile/", u"", u"", 1},
    Memo{u"/var/mobile/", u"", u"Kauppalista", 8},
    Memo{u"~/", u"", u"", 2},
    Memo{u"/var/mobile/", u"", u"\U0001F3B5", 5},
};

QString fileName(const Memo& memo, qsizetype round, const QDateTime& recorded)
{
    // A name that a person gave is there once.
    return memo.fileName.isEmpty() || round > 0 ? recorded.toString(u"yyyyMMdd HHmmss"_s) + u".m4a"_s
                                                : memo.fileName.toString();
}

/// Half of the numbers are above 2^63, which the database writes as negative ones.
qint64 persistentId(qint64 key)
{
    constexpr quint64 kSpread = 0x9E37'79B9'7F4A'7C15ULL;
    return static_cast<qint64>(static_cast<quint64>(key) * kSpread);
}

class Writer {
public:
    Writer(DRSampleIPhoneBackup& backup, const DRSampleSettings& settings, DRDatabase& database)
        : m_backup(backup), m_settings(settings), m_database(database)
    {
    }

    [[nodiscard]] bool write()
    {
        for (int round = 0; round < m_settings.scale; ++round) {
            for (const Memo& memo : kMemos) {
                if (!writeMemo(memo, round)) {
                    return false;
                }
            }
        }
        return insertSampleCoreData(m_database, u"voice memos"_s, {{kRecordingEntity, u"Recording"_s, m_count}});
    }

private:
    [[nodiscard]] bool writeMemo(const Memo& memo, int round)
    {
        const qint64 key = ++m_count;
        const qint64 number = key * kSecondsBetween;
        const QDateTime recorded = m_settings.moment.addSecs(-(number / m_settings.scale));
        const auto sound = DRSampleSound::tune(kSeed + static_cast<quint64>(key), memo.verses, recorded);
        const QString path = u"Media/Recordings/"_s + fileName(memo, round, recorded);
        const QString label = memo.label.isEmpty() ? QString() : memo.label.toString();
        return m_backup.addData({.domain = u"MediaDomain"_s, .path = path}, sound.bytes) &&
               m_database.executeUpdate(
                   u"INSERT INTO ZRECORDING VALUES (?1, ?2, 1, ?3, 0, 0, 0, ?4, ?5, ?6, ?7)"_s,
                   {key, kRecordingEntity, persistentId(key), DRDates::toReferenceSeconds(recorded),
                    static_cast<double>(sound.milliseconds) / 1000.0, label, memo.root.toString() + path});
    }

    DRSampleIPhoneBackup& m_backup;
    const DRSampleSettings& m_settings;
    DRDatabase& m_database;
    qint64 m_count = 0;
};

} // namespace

bool addIPhoneVoiceMemos(DRSampleIPhoneBackup& backup, const DRSampleSettings& settings)
{
    return backup.addDatabase({.domain = u"MediaDomain"_s, .path = u"Media/Recordings/Recordings.db"_s},
                              {u"iphone_voice_memos"_s},
                              [&](DRDatabase& database) { return Writer(backup, settings, database).write(); });
}
