#include "model/backup_entry/DRMigrateBackupEntry.h"

#include "model/backup_entry/DRMigrateBackupEntryDelegate.h"
#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "model/packet/DRMigratePacketCodec.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr double kInitialSecondsPerMegabyte = 1.1;

/// How an old value and a new measurement are blended.
struct Blend {
    double oldShare;
    double newShare;

    [[nodiscard]] double of(double oldValue, double newValue) const
    {
        return oldValue * oldShare + newValue * newShare;
    }
};
constexpr Blend kRemainingBlend{.oldShare = 0.95, .newShare = 0.05};
constexpr Blend kRateBlend{.oldShare = 0.99, .newShare = 0.01};

/// The rate is adjusted whenever more than this has been spent.
constexpr double kRateAdjustmentSeconds = 10.0;

/// A count of bytes in whole MiB. Signed, since what is left may be negative when a data type reports more than its
/// total.
double wholeMegabytes(quint64 bytes)
{
    return static_cast<double>(static_cast<qint64>(bytes) >> 20);
}

} // namespace

DRMigrateBackupEntry::DRMigrateBackupEntry(const DRMigrateServices& services) : m_services(services) {}

DRMigrateBackupEntry::~DRMigrateBackupEntry() = default;

QStringList DRMigrateBackupEntry::allDataTypes()
{
    using namespace DRMigrateKeys;
    return {kContacts, kTextMessages, kNotes, kCalendar, kBookmarks, kImages, kMusic, kVoiceMemos};
}

void DRMigrateBackupEntry::addAllDataTypes()
{
    for (const QString& key : allDataTypes()) {
        addDataType(key, nullptr);
    }
}

void DRMigrateBackupEntry::addDataType(const QString& /*key*/, const DRDCDevicePointer& /*device*/) {}

void DRMigrateBackupEntry::setDataType(const DRMigrateDataTypePointer& dataType, const QString& key)
{
    if (!dataType) {
        return;
    }
    const std::scoped_lock lock(m_dataTypesMutex);
    m_dataTypes[key] = dataType;
}

DRMigrateDataTypePointer DRMigrateBackupEntry::dataTypeForKey(const QString& key) const
{
    if (key.isEmpty()) {
        return nullptr;
    }
    const std::scoped_lock lock(m_dataTypesMutex);
    const auto found = m_dataTypes.find(key);
    return found == m_dataTypes.end() ? nullptr : found->second;
}

DRMigrateDataTypePointer DRMigrateBackupEntry::dataTypeForPacketID(const QString& packetID) const
{
    if (packetID.isEmpty()) {
        return nullptr;
    }
    for (const auto& dataType : dataTypesInKeyOrder()) {
        if (dataType->packetID() == packetID) {
            return dataType;
        }
    }
    return nullptr;
}

QStringList DRMigrateBackupEntry::dataTypeKeys() const
{
    const std::scoped_lock lock(m_dataTypesMutex);
    QStringList keys;
    for (const auto& [key, dataType] : m_dataTypes) {
        keys.append(key);
    }
    return keys;
}

std::vector<DRMigrateDataTypePointer> DRMigrateBackupEntry::dataTypesInKeyOrder() const
{
    const std::scoped_lock lock(m_dataTypesMutex);
    std::vector<DRMigrateDataTypePointer> dataTypes;
    for (const auto& [key, dataType] : m_dataTypes) {
        dataTypes.push_back(dataType);
    }
    return dataTypes;
}

void DRMigrateBackupEntry::loadAll()
{
    loadDataTypes(dataTypeKeys());
}

void DRMigrateBackupEntry::loadDataTypes(const QStringList& keys)
{
    for (const QString& key : keys) {
        loadDataType(key);
    }
}

void DRMigrateBackupEntry::loadDataType(const QString& key)
{
    const DRMigrateDataTypePointer dataType = dataTypeForKey(key);
    if (!dataType) {
        return;
    }
    dataType->setSourcePath(m_backupPath);
    dataType->setTargetPath(DRMigrateUtils::pathToInflateFolder(m_services.folders.temporary));
    dataType->setDataTypeKey(key);
    dataType->loadWithHandler([entry = weak_from_this()](const DRMigrateDataTypePointer& loaded, bool /*success*/) {
        if (const auto self = entry.lock()) {
            self->dataTypeHasBeenLoaded(*loaded);
        }
    });
}

bool DRMigrateBackupEntry::mergeWithBackup(const DRMigrateBackupEntry& /*source*/)
{
    return true;
}

void DRMigrateBackupEntry::saveAll() {}

bool DRMigrateBackupEntry::isWorking() const
{
    return std::ranges::any_of(dataTypesInKeyOrder(), [](const auto& dataType) { return dataType->isWorking(); });
}

bool DRMigrateBackupEntry::areAllDataTypesLoaded() const
{
    return std::ranges::all_of(dataTypesInKeyOrder(), [](const auto& dataType) { return dataType->isLoaded(); });
}

bool DRMigrateBackupEntry::areAllDataTypesMerged() const
{
    return std::ranges::all_of(dataTypesInKeyOrder(), [](const auto& dataType) { return dataType->isMerged(); });
}

bool DRMigrateBackupEntry::areAllDataTypesSaved() const
{
    return std::ranges::all_of(dataTypesInKeyOrder(), [](const auto& dataType) { return dataType->isSaved(); });
}

bool DRMigrateBackupEntry::doesDataTypesContainErrors() const
{
    return std::ranges::any_of(dataTypesInKeyOrder(), [](const auto& dataType) { return dataType->hasError(); });
}

QStringList DRMigrateBackupEntry::ignoredPacketIDs() const
{
    QStringList packetIDs;
    for (const auto& dataType : dataTypesInKeyOrder()) {
        if (dataType->ignoreDataType() && !dataType->packetID().isEmpty()) {
            packetIDs.append(dataType->packetID());
        }
    }
    return packetIDs;
}

quint64 DRMigrateBackupEntry::bytesToTransfer() const
{
    const auto dataTypes = dataTypesInKeyOrder();
    return std::accumulate(dataTypes.begin(), dataTypes.end(), quint64{0},
                           [](quint64 sum, const auto& dataType) { return sum + dataType->bytesToTransfer(); });
}

quint64 DRMigrateBackupEntry::bytesTransferred() const
{
    const auto dataTypes = dataTypesInKeyOrder();
    return std::accumulate(dataTypes.begin(), dataTypes.end(), quint64{0},
                           [](quint64 sum, const auto& dataType) { return sum + dataType->bytesTransferred(); });
}

void DRMigrateBackupEntry::beginProgress()
{
    // The accumulator is not reset: kept, a second run adjusts its rate a little earlier.
    m_progressTimeSpent = 0.0;
    m_progressTimeRemaining = 0.0;
    m_progressTimePerMegabyte = kInitialSecondsPerMegabyte;
}

DRMigrateBackupEntry::Progress DRMigrateBackupEntry::progressWithDelta(double deltaSeconds)
{
    m_progressTimeSpent += deltaSeconds;
    m_progressTimeAcc += deltaSeconds;

    const quint64 total = bytesToTransfer();
    const quint64 done = bytesTransferred();
    const double fraction =
        total == 0 ? 0.0 : std::clamp(static_cast<double>(done) / static_cast<double>(total), 0.0, 1.0);

    const double estimate = wholeMegabytes(total - done) * m_progressTimePerMegabyte;
    const double remaining =
        m_progressTimeRemaining != 0.0 ? kRemainingBlend.of(m_progressTimeRemaining, estimate) : estimate;
    m_progressTimeRemaining = fraction == 1.0 ? 0.0 : remaining;

    if (m_progressTimeAcc > kRateAdjustmentSeconds) {
        m_progressTimeAcc = 0.0;
        // Kept: the new term is MiB per second, although the rate is seconds per MiB.
        m_progressTimePerMegabyte =
            kRateBlend.of(m_progressTimePerMegabyte, wholeMegabytes(done) / m_progressTimeSpent);
    }
    return {.fraction = fraction, .secondsRemaining = m_progressTimeRemaining};
}

void DRMigrateBackupEntry::dataTypeHasBeenLoaded(DRMigrateDataType& dataType)
{
    if (m_delegate != nullptr) {
        m_delegate->dataTypeHasBeenLoaded(*this, dataType);
    }
}

void DRMigrateBackupEntry::dataTypeHasBeenMerged(DRMigrateDataType& dataType)
{
    if (m_delegate != nullptr) {
        m_delegate->dataTypeHasBeenMerged(*this, dataType);
    }
}

void DRMigrateBackupEntry::dataTypeHasBeenSaved(DRMigrateDataType& dataType)
{
    if (m_delegate != nullptr) {
        m_delegate->dataTypeHasBeenSaved(*this, dataType);
    }
}
