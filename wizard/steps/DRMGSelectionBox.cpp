#include "wizard/steps/DRMGSelectionBox.h"

#include "model/backup_entry/DRMigrateBackupEntry.h"
#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "model/media/DRMigrateMediaDataType.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

using Column = DRMGSelectionCategory::Column;

/// Which files of which data type a media box stands for.
struct MediaBox {
    QString key;
    QString dataTypeKey;
    quint32 fileKinds;
};

std::array<MediaBox, 3> mediaBoxes()
{
    return {{{DRMigrateKeys::kImages, DRMigrateKeys::kImages, DRMigrateFileKinds::kPhotos},
             {DRMigrateKeys::kVideos, DRMigrateKeys::kImages, DRMigrateFileKinds::kVideos},
             {DRMigrateKeys::kMusic, DRMigrateKeys::kMusic, DRMigrateFileKinds::kMusic}}};
}

std::shared_ptr<DRMigrateMediaDataType> mediaOf(const DRMigrateBackupEntry& entry, const QString& key)
{
    return std::dynamic_pointer_cast<DRMigrateMediaDataType>(entry.dataTypeForKey(key));
}

} // namespace

namespace DRMGSelection {

const std::vector<DRMGSelectionCategory>& categories()
{
    static const std::vector<DRMGSelectionCategory> all{
        {DRMigrateKeys::kContacts, u"IDS_STEPWIZ_CATEGORY_CONTACTS"_s, u"migrate_contacts"_s, Column::Left},
        {DRMigrateKeys::kTextMessages, u"IDS_STEPWIZ_CATEGORY_MESSAGES"_s, u"migrate_messages"_s, Column::Left},
        {DRMigrateKeys::kBookmarks, u"IDS_STEPWIZ_CATEGORY_BOOKMARKS"_s, u"migrate_bookmarks"_s, Column::Left},
        {DRMigrateKeys::kCalendar, u"IDS_STEPWIZ_CATEGORY_CALENDAR"_s, u"migrate_calendar"_s, Column::Left},
        {DRMigrateKeys::kNotes, u"IDS_STEPWIZ_CATEGORY_NOTES"_s, u"migrate_notes"_s, Column::Left},
        {DRMigrateKeys::kImages, u"IDS_STEPWIZ_CATEGORY_PHOTOS"_s, u"migrate_photos"_s, Column::Right},
        {DRMigrateKeys::kVideos, u"IDS_STEPWIZ_CATEGORY_VIDEOS"_s, u"migrate_videos"_s, Column::Right},
        {DRMigrateKeys::kMusic, u"IDS_STEPWIZ_CATEGORY_MUSIC"_s, u"migrate_music"_s, Column::Right},
    };
    return all;
}

QStringList mediaKeys()
{
    QStringList keys;
    for (const MediaBox& box : mediaBoxes()) {
        keys.append(box.key);
    }
    return keys;
}

DRMGSelectionBox* boxForKey(DRMGSelectionBoxes& boxes, const QString& key)
{
    const auto found = std::ranges::find(boxes, key, &DRMGSelectionBox::key);
    return found == boxes.end() ? nullptr : &*found;
}

QStringList selectedKeys(const DRMGSelectionBoxes& boxes)
{
    QStringList keys;
    for (const DRMGSelectionBox& box : boxes) {
        if (!box.isTicked) {
            continue;
        }
        keys.append(box.key);
        if (box.key == DRMigrateKeys::kMusic) {
            keys.append(DRMigrateKeys::kVoiceMemos);
        }
    }
    return keys;
}

QStringList adjustedSelection(QStringList selection, const DRMGSelectionBoxes& boxes)
{
    for (const DRMGSelectionBox& box : boxes) {
        if (!box.isTicked) {
            selection.removeAll(box.key);
        } else if (!selection.contains(box.key)) {
            selection.append(box.key);
        }
    }
    return selection;
}

qsizetype entryCount(const DRMigrateBackupEntry& entry, const QString& key)
{
    const auto dataType = entry.dataTypeForKey(key);
    return dataType ? static_cast<qsizetype>(dataType->entries()->size()) : 0;
}

qsizetype itemCount(const DRMigrateBackupEntry& entry, const QString& key)
{
    if (key == DRMigrateKeys::kMusic) {
        return entryCount(entry, DRMigrateKeys::kMusic) + entryCount(entry, DRMigrateKeys::kVoiceMemos);
    }
    const auto boxes = mediaBoxes();
    const auto* const box = std::ranges::find(boxes, key, &MediaBox::key);
    if (box == boxes.end()) {
        return entryCount(entry, key);
    }
    const auto media = mediaOf(entry, box->dataTypeKey);
    return media ? media->mediaCountOfFileKinds(box->fileKinds) : 0;
}

DRKindContent::State contentState(const DRMigrateBackupEntry& entry, const QString& key)
{
    const auto state = DRKindContent::stateOf(key, entry);
    if (key != DRMigrateKeys::kMusic) {
        return state;
    }
    const auto memos = DRKindContent::stateOf(DRMigrateKeys::kVoiceMemos, entry);
    using State = DRKindContent::State;
    static constexpr std::array kWeightiestFirst{State::Loading, State::Unreadable, State::Loaded, State::NotAvailable,
                                                 State::NotInBackup};
    for (const State one : kWeightiestFirst) {
        if (state == one || memos == one) {
            return one;
        }
    }
    return State::NotSupported;
}

QString labelIdentifier(const QString& key)
{
    const auto found = std::ranges::find(categories(), key, &DRMGSelectionCategory::key);
    return found == categories().end() ? QString() : found->labelIdentifier;
}

QString imageName(const QString& key)
{
    if (key == DRMigrateKeys::kVoiceMemos) { // without a box of its own
        return u"migrate_voice_memos"_s;
    }
    const auto found = std::ranges::find(categories(), key, &DRMGSelectionCategory::key);
    return found == categories().end() ? QString() : found->iconName;
}

quint64 mediaBytes(const DRMigrateBackupEntry& entry, const QString& key)
{
    const auto boxes = mediaBoxes();
    const auto* const box = std::ranges::find(boxes, key, &MediaBox::key);
    if (box == boxes.end()) {
        return 0;
    }
    const auto media = mediaOf(entry, box->dataTypeKey);
    return media ? media->bytesNeededForFileKinds(box->fileKinds) : 0;
}

} // namespace DRMGSelection
