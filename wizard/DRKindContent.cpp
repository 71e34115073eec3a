#include "wizard/DRKindContent.h"

#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "model/media/DRMigrateMediaDataType.h"

#include <limits>

namespace {

/// Which of a media data type's files belong to the selection key.
quint32 fileKindsOf(const QString& key)
{
    if (key == DRMigrateKeys::kImages) {
        return DRMigrateFileKinds::kPhotos;
    }
    if (key == DRMigrateKeys::kVideos) {
        return DRMigrateFileKinds::kVideos;
    }
    if (key == DRMigrateKeys::kMusic) {
        return DRMigrateFileKinds::kMusic; // the playlists are counted beside it
    }
    return std::numeric_limits<quint32>::max();
}

bool isFileKind(const QString& key)
{
    return key == DRMigrateKeys::kImages || key == DRMigrateKeys::kVideos || key == DRMigrateKeys::kMusic ||
           key == DRMigrateKeys::kVoiceMemos;
}

} // namespace

QString DRKindContent::dataTypeKeyOf(const QString& key)
{
    return key == DRMigrateKeys::kVideos ? DRMigrateKeys::kImages : key;
}

DRKindContent::State DRKindContent::stateOf(const QString& key, const DRMigrateBackupEntry& entry)
{
    const DRMigrateDataTypePointer dataType = entry.dataTypeForKey(dataTypeKeyOf(key));
    if (!dataType) {
        return State::NotSupported;
    }
    if (!dataType->isLoaded() && !dataType->hasError()) {
        return State::Loading;
    }
    if (dataType->report().isNotInBackup) {
        return State::NotInBackup;
    }
    if (!dataType->report().notAvailable.isEmpty()) {
        return State::NotAvailable;
    }
    return dataType->hasError() ? State::Unreadable : State::Loaded;
}

DRKindContent DRKindContent::of(const QString& key, const DRMigrateIPhoneBackupEntry& entry)
{
    const DRMigrateDataTypePointer dataType = entry.dataTypeForKey(dataTypeKeyOf(key));
    DRKindContent content{.state = stateOf(key, entry), .isFiles = isFileKind(key), .counts = {}, .why = {}};
    if (!dataType) {
        return content;
    }
    const DRMigrateReport report = dataType->report();
    content.counts = report.counts;
    if (content.state != State::Loaded) {
        content.why = report.skipped.empty() ? report.notAvailable : report.skipped.front().why;
        return content;
    }
    content.count = static_cast<qint64>(dataType->entries()->size());
    if (const auto* media = dynamic_cast<const DRMigrateMediaDataType*>(dataType.get());
        media != nullptr && content.isFiles) {
        const quint32 kinds = fileKindsOf(key);
        const bool isPart = kinds != std::numeric_limits<quint32>::max();
        content.count = isPart ? media->mediaCountOfFileKinds(kinds) : content.count;
        content.bytes = isPart ? media->bytesNeededForFileKinds(kinds) : entry.bytesNeededForSelectedTypes({key});
    }
    return content;
}
