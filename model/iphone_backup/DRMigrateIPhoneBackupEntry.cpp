#include "model/iphone_backup/DRMigrateIPhoneBackupEntry.h"

#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "model/backup_entry/DRMigrateDataTypeRegistry.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "model/media/DRMigrateMediaDataType.h"

namespace {

/// What content that is written into packets is taken to need.
constexpr quint64 kPacketContentBytes = 1048576;

/// The number that the text begins with, after blanks and a sign; 0 when it begins with none.
int leadingInteger(const QString& text)
{
    const QString trimmed = text.trimmed();
    qsizetype length = trimmed.startsWith(u'-') || trimmed.startsWith(u'+') ? 1 : 0;
    while (length < trimmed.size() && trimmed.at(length) >= u'0' && trimmed.at(length) <= u'9') {
        ++length;
    }
    return QStringView(trimmed).left(length).toInt();
}

/// The sizes of all files that the data type, if there is one, has found.
quint64 bytesOfAllFiles(const DRMigrateDataTypePointer& dataType)
{
    quint64 bytes = 0;
    if (dataType) {
        const DREntries entries = dataType->entries();
        for (const DRDCFilePointer* file : recordsOf<DRDCFilePointer>(*entries)) {
            bytes += (*file)->filesize();
        }
    }
    return bytes;
}

} // namespace

void DRMigrateIPhoneBackupEntry::addDataType(const QString& key, const DRDCDevicePointer& /*device*/)
{
    if (const auto dataType = services().registry.iPhoneType(key, services())) {
        dataType->setDataTypeKey(key);
        setDataType(dataType, key);
    }
}

int DRMigrateIPhoneBackupEntry::majorProductVersion() const
{
    return leadingInteger(m_productVersion.section(u'.', 0, 0));
}

bool DRMigrateIPhoneBackupEntry::sortOnDate(const std::shared_ptr<DRMigrateIPhoneBackupEntry>& one,
                                            const std::shared_ptr<DRMigrateIPhoneBackupEntry>& other)
{
    return one->lastBackupDate() > other->lastBackupDate();
}

quint64 DRMigrateIPhoneBackupEntry::bytesNeededForSelectedTypes(const QStringList& keys) const
{
    using namespace DRMigrateKeys;

    const auto imageBytes = [this](quint32 kinds) {
        const auto images = std::dynamic_pointer_cast<DRMigrateMediaDataType>(dataTypeForKey(kImages));
        return images ? images->bytesNeededForFileKinds(kinds) : 0;
    };
    quint64 total = 0;
    for (const QString& key : keys) {
        if (key == kMusic || key == kVoiceMemos) {
            total += bytesOfAllFiles(dataTypeForKey(key));
        } else if (key == kImages) {
            total += imageBytes(DRMigrateFileKinds::kPhotos);
        } else if (key == kVideos) {
            total += imageBytes(DRMigrateFileKinds::kVideos);
        } else {
            total += kPacketContentBytes;
        }
    }
    return total;
}
