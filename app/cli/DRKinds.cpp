#include "app/cli/DRKinds.h"

#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "platform/device/DRBRBackupRestoreController.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

std::span<const DRKind> DRKinds::all()
{
    static const auto kKinds = std::to_array<DRKind>({
        {DRMigrateKeys::kContacts, u"contacts"_s, u"Contacts and calls"_s},
        {DRMigrateKeys::kTextMessages, u"messages"_s, u"Messages"_s},
        {DRMigrateKeys::kNotes, u"notes"_s, u"Notes"_s},
        {DRMigrateKeys::kCalendar, u"calendar"_s, u"Calendar"_s},
        {DRMigrateKeys::kBookmarks, u"bookmarks"_s, u"Bookmarks"_s},
        {DRMigrateKeys::kImages, u"photos"_s, u"Photos"_s},
        {DRMigrateKeys::kVideos, u"videos"_s, u"Videos"_s},
        {DRMigrateKeys::kMusic, u"music"_s, u"Music"_s},
        {DRMigrateKeys::kVoiceMemos, u"voicememos"_s, u"Voice memos"_s},
    });
    return kKinds;
}

QStringList DRKinds::allKeys()
{
    QStringList keys;
    for (const DRKind& kind : all()) {
        keys << kind.key;
    }
    return keys;
}

QString DRKinds::nameOfKey(const QString& key)
{
    const auto found = std::ranges::find(all(), key, &DRKind::key);
    return found == all().end() ? key : found->name;
}

QString DRKinds::titleOfPacketOrKey(const QString& packetOrKey)
{
    const QString kind = DRBRBackupRestoreController::dataTypeOfPacket(packetOrKey);
    return kind.isEmpty() ? nameOfKey(packetOrKey) : u"%1 (%2)"_s.arg(nameOfKey(kind), packetOrKey);
}

std::optional<QString> DRKinds::keyOfName(const QString& name)
{
    const auto isMeant = [&name](const DRKind& kind) { return kind.name == name || kind.key == name; };
    const auto found = std::ranges::find_if(all(), isMeant);
    if (found == all().end()) {
        return std::nullopt;
    }
    return found->key;
}

DRKinds::List DRKinds::fromText(const QString& commaSeparated)
{
    QStringList named;
    for (const QString& entry : commaSeparated.split(u',')) {
        const QString name = entry.trimmed();
        const auto key = keyOfName(name);
        if (!key) {
            return {.keys = {}, .unknown = name.isNull() ? u""_s : name};
        }
        named << *key;
    }
    QStringList keys = allKeys();
    keys.removeIf([&named](const QString& key) { return !named.contains(key); });
    return {.keys = keys, .unknown = {}};
}

QString DRKinds::namesOf(const QStringList& keys)
{
    QStringList names;
    for (const QString& key : keys) {
        names << nameOfKey(key);
    }
    return names.join(u", "_s);
}
