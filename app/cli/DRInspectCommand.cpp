#include "app/cli/DRInspectCommand.h"

#include "app/cli/DRBackupChoice.h"
#include "app/cli/DRBackupLoader.h"
#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRKinds.h"
#include "app/cli/DRTerminal.h"
#include "app/cli/DRTextTable.h"
#include "app/DRInterrupt.h"
#include "app/DRMigrateStartup.h"
#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRSizeText.h"
#include "wizard/DRKindContent.h"

using namespace Qt::StringLiterals;

namespace {

/// The further counts that a kind always has in the JSON.
const QStringList& countNamesOf(const QString& key)
{
    static const std::map<QString, QStringList> kNames{
        {DRMigrateKeys::kContacts, {u"calls"_s}},     {DRMigrateKeys::kTextMessages, {u"messages"_s, u"attachments"_s}},
        {DRMigrateKeys::kCalendar, {u"calendars"_s}}, {DRMigrateKeys::kBookmarks, {u"folders"_s}},
        {DRMigrateKeys::kMusic, {u"playlists"_s}},
    };
    static const QStringList kNone;
    const auto found = kNames.find(key);
    return found == kNames.end() ? kNone : found->second;
}

QString reasonName(DRKindContent::State state)
{
    switch (state) {
    case DRKindContent::State::Loaded:
        break;
    case DRKindContent::State::NotSupported:
        return u"notSupported"_s;
    case DRKindContent::State::NotInBackup:
        return u"notInBackup"_s;
    case DRKindContent::State::NotAvailable:
        return u"notAvailable"_s;
    case DRKindContent::State::Loading: // only loaded backups come here
    case DRKindContent::State::Unreadable:
        return u"unreadable"_s;
    }
    return {};
}

QString stateText(const DRKindContent& content)
{
    switch (content.state) {
    case DRKindContent::State::Loaded:
        break;
    case DRKindContent::State::NotSupported:
        return u"not supported by this version"_s;
    case DRKindContent::State::NotInBackup:
        return u"not in the backup"_s;
    case DRKindContent::State::NotAvailable:
        return u"not available: "_s + content.why;
    case DRKindContent::State::Loading: // only loaded backups come here
    case DRKindContent::State::Unreadable:
        return content.why.isEmpty() ? u"cannot be read"_s : u"cannot be read: "_s + content.why;
    }
    return u"read"_s;
}

QJsonObject jsonOf(const QString& key, const DRKindContent& content)
{
    QJsonObject object{
        {u"state"_s, content.state == DRKindContent::State::Loaded ? u"loaded"_s : u"failed"_s},
        {u"count"_s, content.count},
        {u"reason"_s, DRJsonOutput::text(reasonName(content.state))},
    };
    for (const QString& name : countNamesOf(key)) {
        object.insert(name, 0);
    }
    for (const auto& [name, count] : content.counts) {
        object.insert(name, count);
    }
    if (content.isFiles) {
        object.insert(u"bytes"_s, DRJsonOutput::bytes(content.bytes));
    }
    return object;
}

QByteArray jsonOf(const DRMigrateIPhoneBackupEntryPointer& entry)
{
    QJsonObject kinds;
    for (const QString& key : DRKinds::allKeys()) {
        kinds.insert(key, jsonOf(key, DRKindContent::of(key, *entry)));
    }
    return DRJsonOutput::document({
        {u"version"_s, 1},
        {u"backup"_s, DRJsonOutput::backup(DRBackupList::single(entry))},
        {u"kinds"_s, kinds},
        {u"bytesNeeded"_s, DRJsonOutput::bytes(entry->bytesNeededForSelectedTypes(DRKinds::allKeys()))},
    });
}

QString textOf(const DRMigrateIPhoneBackupEntry& entry)
{
    DRTextTable table({u"Kind"_s, u"Count"_s, u"Size"_s, u"State"_s});
    for (const DRKind& kind : DRKinds::all()) {
        const DRKindContent content = DRKindContent::of(kind.key, entry);
        QStringList details{stateText(content)};
        for (const auto& [name, count] : content.counts) {
            details << u"%1 %2"_s.arg(count).arg(name);
        }
        table.add({kind.name, QString::number(content.count), content.isFiles ? sizeText(content.bytes) : QString(),
                   details.join(u", "_s)});
    }
    const quint64 needed = entry.bytesNeededForSelectedTypes(DRKinds::allKeys());
    return u"%1 (%2, system %3), backed up %4\n%5Needs on the phone: %6\n"_s.arg(
        withoutControlCharacters(entry.deviceName()), withoutControlCharacters(entry.productType()),
        withoutControlCharacters(entry.productVersion()),
        entry.lastBackupDate().toLocalTime().toString(u"yyyy-MM-dd HH:mm"), table.text(), sizeText(needed));
}

} // namespace

DRCommandOutcome DRInspectCommand::run()
{
    const QString argument = line().arguments.value(0);
    const auto choice = DRBackupChoice::choose(argument, startup().backupsFolder(), startup().scratchServices());
    if (const auto* refusal = std::get_if<DRCommandOutcome>(&choice)) {
        return *refusal;
    }
    const auto& entry = std::get<DRMigrateIPhoneBackupEntryPointer>(choice);
    terminal().say(u"Reading %1 …"_s.arg(withoutControlCharacters(entry->backupPath())));
    DRInterrupt interrupt;
    if (DRBackupLoader::load(*entry, interrupt) == DRBackupLoader::Ending::Interrupted) {
        return {DRExitCode::Interrupted, u"Stopped."_s, {}, true};
    }
    if (line().json) {
        terminal().data(jsonOf(entry));
        return {};
    }
    terminal().data(textOf(*entry));
    return {};
}
