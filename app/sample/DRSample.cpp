#include "app/sample/DRSample.h"

#include "app/sample/DRSampleBookmarks.h"
#include "app/sample/DRSampleCalendar.h"
#include "app/sample/DRSampleContacts.h"
#include "app/sample/DRSampleIPhoneBackup.h"
#include "app/sample/DRSampleMessages.h"
#include "app/sample/DRSampleMusic.h"
#include "app/sample/DRSampleNotes.h"
#include "app/sample/DRSamplePhone.h"
#include "app/sample/DRSamplePhoneBrowser.h"
#include "app/sample/DRSamplePhoneCalendar.h"
#include "app/sample/DRSamplePhoneChrome.h"
#include "app/sample/DRSamplePhoneContacts.h"
#include "app/sample/DRSamplePhoneTelephony.h"
#include "app/sample/DRSamplePhotos.h"
#include "app/sample/DRSampleVoiceMemos.h"
#include "platform/core/DRClock.h"

#include <QDir>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

struct Draft {
    DRSampleIPhoneBackup backup;
    DRSamplePhone phone;
    QString music;
    QString finalMusic; ///< where the music goes at the end
    DRSampleSettings settings;
};

struct Part {
    const char* name;
    bool (*write)(Draft& draft);
};

constexpr std::array kParts{
    Part{"iPhone notes", [](Draft& draft) { return addIPhoneNotes(draft.backup, draft.settings); }},
    Part{"iPhone contacts", [](Draft& draft) { return addIPhoneContacts(draft.backup, draft.settings); }},
    Part{"iPhone messages", [](Draft& draft) { return addIPhoneMessages(draft.backup, draft.settings); }},
    Part{"iPhone calendar", [](Draft& draft) { return addIPhoneCalendar(draft.backup, draft.settings); }},
    Part{"iPhone bookmarks", [](Draft& draft) { return addIPhoneBookmarks(draft.backup, draft.settings); }},
    Part{"iPhone photos", [](Draft& draft) { return addIPhonePhotos(draft.backup, draft.settings); }},
    Part{"iPhone voice memos", [](Draft& draft) { return addIPhoneVoiceMemos(draft.backup, draft.settings); }},
    Part{"iPhone backup", [](Draft& draft) { return draft.backup.finish(); }},
    Part{"phone notes", [](Draft& draft) { return addPhoneNotes(draft.phone, draft.settings); }},
    Part{"phone messages", [](Draft& draft) { return addPhoneTelephony(draft.phone, draft.settings); }},
    Part{"phone calendar", [](Draft& draft) { return addPhoneCalendar(draft.phone, draft.settings); }},
    Part{"phone browser", [](Draft& draft) { return addPhoneBrowser(draft.phone, draft.settings); }},
    Part{"phone Chrome", [](Draft& draft) { return addPhoneChrome(draft.phone, draft.settings); }},
    Part{"phone contacts", [](Draft& draft) { return addPhoneContacts(draft.phone, draft.settings); }},
    Part{"phone storage",
         [](Draft& draft) {
             return draft.phone.addStorageFile(u"Download/welcome.txt"_s, "Welcome to your new phone.\n") &&
                    draft.phone.addStorageFile(u"Music/readme.txt"_s, "Music copied to this phone goes here.\n");
         }},
    Part{"phone", [](Draft& draft) { return draft.phone.finish(); }},
    Part{"music library", [](Draft& draft) { return writeSampleMusic(draft.music, draft.finalMusic, draft.settings); }},
};

DRSampleResult refusal(const QString& message)
{
    return {.message = message};
}

/// The name of the part that failed; null when all are written.
QString writeParts(Draft& draft, const DRSampleProgress& progress)
{
    int done = 0;
    for (const Part& part : kParts) {
        QString name = QString::fromLatin1(part.name);
        if (!part.write(draft)) {
            return name;
        }
        ++done;
        if (progress) {
            progress(done, static_cast<int>(kParts.size()), name);
        }
    }
    return {};
}

/// What `writeSample` makes, in the directory of its name or as a draft.
struct Folders {
    explicit Folders(const QString& directory)
        : backups(directory + u"/backups"_s), phone(directory + u"/phone"_s), music(directory + u"/music"_s)
    {
    }

    QString backups;
    QString phone;
    QString music;

    [[nodiscard]] QString backup() const { return backups + u'/' + DRSampleIPhoneBackup::backupId(); }
    [[nodiscard]] bool make() const
    {
        return QDir().mkpath(backup()) && QDir().mkpath(phone + u"/packets"_s) && QDir().mkpath(music);
    }
    [[nodiscard]] QString musicLibrary() const { return music + u'/' + sampleMusicLibraryName(); }
};

bool isMissingOrEmpty(const QString& folder)
{
    constexpr auto kEverything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    const QFileInfo info(folder);
    return !info.isSymLink() && (!info.exists() || (info.isDir() && QDir(folder).isEmpty(kEverything)));
}

/// Why a sample cannot be written there; null when it can.
QString reasonAgainst(const Folders& folders, int scale)
{
    if (scale < 1) {
        return u"The scale of a sample must be at least 1."_s;
    }
    for (const QString& folder : {folders.backups, folders.phone, folders.music}) {
        if (!isMissingOrEmpty(folder)) {
            return u"%1 exists already and is not empty."_s.arg(folder);
        }
    }
    return {};
}

struct Move {
    QString folder;
    QString target; ///< missing or empty

    [[nodiscard]] bool run() const
    {
        return (!QFileInfo::exists(target) || QDir().rmdir(target)) && QDir().rename(folder, target);
    }
};

bool moveAllOrNone(const std::vector<Move>& moves)
{
    for (auto move = moves.begin(); move != moves.end(); ++move) {
        if (!move->run()) {
            std::for_each(moves.begin(), move, [](const Move& done) { QDir().rename(done.target, done.folder); });
            return false;
        }
    }
    return true;
}

} // namespace

DRSampleResult writeSample(const QString& directory, int scale, const DRClock& clock, const DRSampleProgress& progress)
{
    const Folders target(QFileInfo(directory).absoluteFilePath());
    if (const QString reason = reasonAgainst(target, scale); !reason.isNull()) {
        return refusal(reason);
    }
    // Everything is made beside its place and renamed at the end, so that a failure leaves nothing half made.
    QDir().mkpath(directory);
    const QTemporaryDir draftFolder(directory + u"/.sample-XXXXXX"_s);
    const Folders made(draftFolder.path());
    if (!draftFolder.isValid() || !made.make()) {
        return refusal(u"Folders cannot be made in %1."_s.arg(directory));
    }
    const QDateTime now = clock.now();
    const DRSampleSettings settings{.moment = now.addMSecs(-now.time().msec()), .scale = scale};
    Draft draft{.backup = {made.backup(), settings},
                .phone = {made.phone, draftFolder.filePath(u"work"_s), settings},
                .music = made.music,
                .finalMusic = target.music,
                .settings = settings};
    if (const QString failed = writeParts(draft, progress); !failed.isNull()) {
        return refusal(u"The sample's part \"%1\" cannot be written to %2."_s.arg(failed, directory));
    }
    if (!moveAllOrNone({{made.backups, target.backups}, {made.phone, target.phone}, {made.music, target.music}})) {
        return refusal(u"The sample cannot be moved into its place in %1."_s.arg(directory));
    }
    return {.isWritten = true,
            .message = {},
            .backupFolder = target.backup(),
            .phoneFolder = target.phone,
            .musicLibrary = target.musicLibrary()};
}
