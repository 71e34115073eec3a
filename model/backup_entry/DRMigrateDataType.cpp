#include "model/backup_entry/DRMigrateDataType.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "model/packet/DRPacketProblem.h"
#include "platform/core/DRTaskQueue.h"

#include <QFile>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// What a packet counts for in the progress: 4 MiB, whatever its size.
constexpr quint64 kPacketWeightBytes = 4194304;

constexpr auto kPacketFileName = "fullbackupdata"_L1;

DRMigrateSkippedItem leftOutFile(const QString& path)
{
    return {.what = u"The phone's own file "_s + path, .why = u"packets cannot hold a name that begins with a dot"_s};
}

/// What of the phone's own packet could not be expanded, and so will be missing from the rebuilt one.
void addLosses(DRMigrateReport& report, const DRMigrateUtils::PacketExpansion& expansion)
{
    if (expansion.isDamaged) {
        report.skipped.push_back({.what = u"The end of the phone's packet"_s, .why = u"it is damaged"_s});
    }
    if (expansion.leftOutCount > 0) {
        report.skipped.push_back({.what = u"Entries of the phone's packet: %1"_s.arg(expansion.leftOutCount),
                                  .why = u"they are links, devices or lead outside"_s});
    }
}

} // namespace

DRMigrateDataType::DRMigrateDataType(const DRMigrateServices& services)
    : m_services(services), m_entries(std::make_shared<const DREntryList>())
{
}

DRMigrateDataType::~DRMigrateDataType() = default;

bool DRMigrateDataType::load()
{
    return false;
}

bool DRMigrateDataType::mergeDataFrom(const DRMigrateDataType& source)
{
    const DREntries own = entries();
    const DREntries added = source.entries();
    DREntryList merged;
    merged.reserve(own->size() + added->size());
    merged.insert(merged.end(), own->begin(), own->end());
    merged.insert(merged.end(), added->begin(), added->end());
    setEntries(std::move(merged));
    return true;
}

bool DRMigrateDataType::save()
{
    return false;
}

void DRMigrateDataType::loadWithHandler(Handler handler)
{
    runStep([this] { return load(); }, kDRMigrateDataTypeFlagLoaded, std::move(handler));
}

void DRMigrateDataType::mergeDataFromWithHandler(const std::shared_ptr<const DRMigrateDataType>& source,
                                                 Handler handler)
{
    runStep([this, source] { return mergeDataFrom(*source); }, kDRMigrateDataTypeFlagMerged, std::move(handler));
}

void DRMigrateDataType::saveWithHandler(Handler handler)
{
    runStep([this] { return save(); }, kDRMigrateDataTypeFlagSaved, std::move(handler));
}

void DRMigrateDataType::runStep(std::function<bool()> step, qint64 successFlag, Handler handler)
{
    ++m_stepsUnderWay;
    DRTaskQueue& queue = m_services.taskQueue;
    queue.runInBackground([self = shared_from_this(), &queue, step = std::move(step), successFlag,
                           handler = std::move(handler)]() mutable {
        const bool success = step();
        // The step goes along, so that what it holds is let go on the main thread.
        queue.runOnMainThread(
            [self = std::move(self), step = std::move(step), success, successFlag, handler = std::move(handler)] {
                --self->m_stepsUnderWay;
                self->setFlags(success ? self->flags() | successFlag : kDRMigrateDataTypeFlagError);
                handler(self, success);
            });
    });
}

quint64 DRMigrateDataType::bytesToTransfer() const
{
    return kPacketWeightBytes;
}

quint64 DRMigrateDataType::bytesTransferred() const
{
    const quint64 half = bytesToTransfer() / 2;
    const quint64 fetched = (m_flags & kDRMigrateDataTypeFlagBackedUp) != 0 ? half : 0;
    const quint64 restored = (m_flags & kDRMigrateDataTypeFlagRestored) != 0 ? half : 0;
    return fetched + restored;
}

std::optional<QStringList> DRMigrateDataType::filesInAppsFolder() const
{
    return DRMigrateUtils::filesBelowApps(m_targetPath + u'/' + m_packetID);
}

bool DRMigrateDataType::checkForManifest()
{
    const bool hasManifest =
        !m_targetPath.isEmpty() && !m_packetID.isEmpty() && QFile::exists(pathInApp(u"_manifest"_s));
    m_manifestMissing = !hasManifest;
    return hasManifest;
}

DREntries DRMigrateDataType::entries() const
{
    const std::scoped_lock lock(m_valuesMutex);
    return m_entries;
}

void DRMigrateDataType::setEntries(DREntries entries)
{
    const std::scoped_lock lock(m_valuesMutex);
    m_entries = entries ? std::move(entries) : std::make_shared<const DREntryList>();
}

void DRMigrateDataType::setEntries(DREntryList entries)
{
    setEntries(std::make_shared<const DREntryList>(std::move(entries)));
}

DRMigrateReport DRMigrateDataType::report() const
{
    const std::scoped_lock lock(m_valuesMutex);
    return m_report;
}

void DRMigrateDataType::setReport(DRMigrateReport report)
{
    const std::scoped_lock lock(m_valuesMutex);
    m_report = std::move(report);
}

bool DRMigrateDataType::expandPacket()
{
    if (m_sourcePath.isEmpty() || m_targetPath.isEmpty() || m_packetID.isEmpty()) {
        return false;
    }
    const QString packet = m_sourcePath + u'/' + m_packetID + u'/' + kPacketFileName;
    const auto expansion = DRMigrateUtils::expandPacket(packet, m_targetPath + u'/' + m_packetID);
    DRMigrateReport changed = report();
    if (expansion.isExpanded) {
        addLosses(changed, expansion);
        setReport(std::move(changed));
        return true;
    }
    changed.skipped.push_back({.what = u"The phone's packet "_s + m_packetID, .why = packetProblem(packet)});
    setReport(std::move(changed));
    return false;
}

void DRMigrateDataType::skipWithoutManifest(const QString& app)
{
    DRMigrateReport changed = report();
    changed.skipped.push_back(
        {.what = app, .why = u"its packet from the phone has no manifest, so the phone would not take it back"_s});
    setReport(std::move(changed));
}

bool DRMigrateDataType::packPacket()
{
    const auto files = filesInAppsFolder();
    return files && packFiles(*files);
}

bool DRMigrateDataType::packFiles(const QStringList& files)
{
    if (m_targetPath.isEmpty() || m_packetID.isEmpty()) {
        return false;
    }
    const QString folder = m_targetPath + u'/' + m_packetID;
    DRMigrateReport changed = report();
    for (const QString& file : files) {
        if (DRMigrateUtils::isLeftOutOfPackets(file)) {
            changed.skipped.push_back(leftOutFile(file));
        }
    }
    setReport(changed);
    if (DRMigrateUtils::compressAndroidBackupPacket(folder, files, folder + u'/' + kPacketFileName)) {
        return true;
    }
    changed.skipped.push_back({.what = u"The phone's packet "_s + m_packetID,
                               .why = u"it cannot be packed again; is the disk of this computer full?"_s});
    setReport(std::move(changed));
    return false;
}

QString DRMigrateDataType::appFolder() const
{
    return u"%1/%2/apps/%2"_s.arg(m_targetPath, m_packetID);
}

QString DRMigrateDataType::pathInApp(const QString& relativePath) const
{
    return appFolder() + u'/' + relativePath;
}
