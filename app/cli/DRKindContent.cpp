#include "app/cli/DRKindContent.h"

#include "app/cli/DRKinds.h"
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

DRKindContent::State stateOf(const DRMigrateDataType* dataType)
{
    if (dataType == nullptr) {
        return DRKindContent::State::NotSupported;
    }
    if (dataType->report().isNotInBackup) {
        return DRKindContent::State::NotInBackup;
    }
    if (!dataType->report().notAvailable.isEmpty()) {
        return DRKindContent::State::NotAvailable;
    }
    return dataType->isLoaded() && !dataType->hasError() ? DRKindContent::State::Loaded
                                                         : DRKindContent::State::Unreadable;
}

} // namespace

DRKindContent DRKindContent::of(const QString& key, const DRMigrateIPhoneBackupEntry& entry)
{
    const DRMigrateDataTypePointer dataType = entry.dataTypeForKey(DRKinds::dataTypeKeyOf(key));
    DRKindContent content{.state = stateOf(dataType.get()), .isFiles = isFileKind(key), .counts = {}, .why = {}};
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
