#include "app/cli/DRCommandHelp.h"

#include <map>

using namespace Qt::StringLiterals;

namespace {

const QString kProgram = uR"(Moves the content of an iPhone backup onto an Android phone.

Usage: phone-migrate <command> [options]

Commands:
  backups                      list the iPhone backups, usable or not, with the reason
  inspect  [BACKUP]            load a backup: what it holds, counts and sizes per kind
  phone                        describe the phone: storage, apps that it offers
  transfer [BACKUP]            move content onto the phone
  phone-backups                list the backups of phones that transfers kept on this computer
  restore  PHONE-BACKUP        undo: put the phone's apps back to what a phone backup holds
  packet show FILE | expand FILE DIR | pack DIR FILE
                               look into one app's data
  sample DIR                   write a sample iPhone backup, phone and music library to try
  doctor                       check what a transfer needs

Example: phone-migrate transfer --phone ~/phone --only contacts,photos --dry-run

)"_s;

const QString kCommonOptions = uR"(Options of all commands:
  --backups DIR                where iPhone backups are ($PHONE_MIGRATE_BACKUPS)
  --phone DIR                  a phone kept in a folder ($PHONE_MIGRATE_PHONE)
  --music FILE                 the computer's music library, XML ($PHONE_MIGRATE_MUSIC), else the
                               one in ~/Music/iTunes
  --json                       data as JSON on the standard output
  --quiet                      only errors
  --verbose                    log lines, too
  --progress MODE              auto, bar, lines or none
  --no-color                   no escape codes
  --log FILE                   append the log to a file
  -h, --help                   this help; after a command, that command's
  -V, --version                the version

BACKUP is a number or device name as "phone-migrate backups" shows them, or a folder: one backup,
or a folder of backups that holds one usable backup. PHONE-BACKUP is a number or name as "phone-migrate
phone-backups" shows them, or its folder.

Exit codes: 0 done, 1 internal error, 2 usage, 11 not enough space on the phone, 12 no backup found,
13 encrypted backup, 14 iPhone system too old, 15 phone incompatible, 16 failed or refused, phone unchanged,
17 failed, phone partly changed, 18 no phone, 19 backup's layout cannot be read, 20 done, but something was
skipped, 130 interrupted.
)"_s;

const QString kBackups = uR"(Usage: phone-migrate backups [--backups DIR] [--json]

Lists the iPhone backups in the backups folder, the newest first, usable or not, with the reason.

Example: phone-migrate backups --backups ~/MobileSync/Backup

)"_s;

const QString kInspect = uR"(Usage: phone-migrate inspect [BACKUP] [--json]

Loads a backup and shows how much of each kind it holds. The backup is only read.

Example: phone-migrate inspect 1

)"_s;

const QString kPhone = uR"(Usage: phone-migrate phone --phone DIR [--json]

Describes the phone: name, Android version, storage, and the app packets that it offers.

Example: phone-migrate phone --phone ~/phone

)"_s;

const QString kTransfer = uR"(Usage: phone-migrate transfer [BACKUP] --phone DIR [options]

Moves content of a backup onto the phone. The phone's apps are backed up before, and that backup is kept.

Options:
  --only KINDS                 move only these kinds
  --except KINDS               move all kinds but these
  -n, --dry-run                only say what would be moved
  -y, --yes                    start without asking
  --again                      move what this phone got from this backup before, too: it will be there twice
  --keep-work                  keep the working folder

Music comes from this computer's music library: the playlists that the iPhone took, with their songs.

KINDS are separated by commas: contacts,messages,notes,calendar,bookmarks,photos,videos,music,voicememos.

Example: phone-migrate transfer 1 --phone ~/phone --except videos --yes

)"_s;

const QString kPhoneBackups = uR"(Usage: phone-migrate phone-backups [--json]

Lists the backups of phones' apps that transfers and restores kept on this computer before they wrote to a phone: the
newest first, damaged ones and what is left of them included. A newer one moves the numbers of all others.

Example: phone-migrate phone-backups

)"_s;

const QString kRestore = uR"(Usage: phone-migrate restore PHONE-BACKUP --phone DIR [options]

Undoes a transfer: puts the phone's apps back to what a phone backup holds. The backup is read to its end before, the
apps as they are now are kept as a further phone backup, and what the phone holds afterwards is verified. Each app is put
back whole or stays as it is. Files that were copied to the phone stay on it.

Options:
  --only KINDS                 put back only the apps of these kinds
  --except KINDS               put back all apps but those of these kinds
  -n, --dry-run                only check the phone backup and say what would be put back
  -y, --yes                    start without asking

Refused with nothing written: 11 not enough space on the phone, 12 no such phone backup, 15 phone incompatible, 16 backup of
another phone, damaged or empty, another run in progress, or the phone's apps could not be kept, 18 no phone.
17: an app could not be put back or verified; the summary names it. 20: all well, but an app of the backup was skipped.

Example: phone-migrate restore 1 --phone ~/phone

)"_s;

const QString kPacket = uR"(Usage: phone-migrate packet show FILE
       phone-migrate packet expand FILE DIR [--force]
       phone-migrate packet pack DIR FILE

Shows the files of an app packet, expands it into a folder, or packs the files below DIR/apps.
A folder that is not empty is refused unless --force, which empties it.

Example: phone-migrate packet show phone/packets/com.vornmobile.notes/fullbackupdata

)"_s;

const QString kSample = uR"(Usage: phone-migrate sample DIR [--scale N]

Writes a made-up iPhone backup to DIR/backups, a made-up phone to DIR/phone and a made-up music library of this computer
to DIR/music, N times the usual amount.

Example: phone-migrate sample ~/try

)"_s;

const QString kDoctor = uR"(Usage: phone-migrate doctor [--backups DIR] [--phone DIR] [--json]

Checks what a transfer needs and tells the fix for what is missing. Changes nothing. The exit code is that of
the first missing thing, such as 12 without a backup and 18 without a phone.

Example: phone-migrate doctor --phone ~/phone

)"_s;

} // namespace

QString DRCommandHelp::text(const QString& command)
{
    static const std::map<QString, QString> kTexts{
        {u"backups"_s, kBackups}, {u"inspect"_s, kInspect}, {u"phone"_s, kPhone},   {u"transfer"_s, kTransfer},
        {u"packet"_s, kPacket},   {u"sample"_s, kSample},   {u"doctor"_s, kDoctor}, {u"phone-backups"_s, kPhoneBackups},
        {u"restore"_s, kRestore},
    };
    const auto found = kTexts.find(command);
    return (found == kTexts.end() ? kProgram : found->second) + kCommonOptions;
}

QString DRCommandHelp::version()
{
    return u"phone-migrate "_s + QStringLiteral(MIGRATE_VERSION) + u'\n';
}
