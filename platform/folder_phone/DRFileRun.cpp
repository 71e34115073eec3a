#include "platform/folder_phone/DRFileRun.h"

#include <utility>

namespace {

QString targetPathOf(const DRDCFile& file)
{
    return file.metadataForKey(QLatin1StringView(DRDCFile::kTargetPath)).toString();
}

/// Stands in a list of failures for a file that is only on the phone.
DRDCFilePointer recordOfPhoneFile(const QString& path)
{
    auto file = std::make_shared<DRDCFile>();
    file->setMetadata(path, QLatin1StringView(DRDCFile::kTargetPath));
    return file;
}

} // namespace

DRFileRun::DRFileRun(Request request, DRFolderPhoneStorage storage)
    : m_device(std::move(request.device)), m_handler(std::move(request.handler)), m_storage(std::move(storage))
{
    for (const QString& path : std::as_const(request.pathsToDelete)) {
        m_items.push_back({.file = recordOfPhoneFile(path), .targetPath = path, .isDeletion = true});
    }
    for (const DRDCFilePointer& file : request.filesToCopy) {
        file->setMetadata({}, QLatin1StringView(DRDCFile::kPlaceOnPhone)); // of an earlier copy
        m_items.push_back({.file = file, .targetPath = targetPathOf(*file)});
    }
}

std::vector<quint64> DRFileRun::prepare()
{
    std::vector<quint64> sizes;
    sizes.reserve(m_items.size());
    for (const Item& item : m_items) {
        sizes.push_back(item.file->filesize());
    }
    return sizes;
}

DRStepOutcome DRFileRun::work(std::size_t index, const DRByteProgress& progress)
{
    const Item& item = m_items[index];
    if (item.isDeletion) {
        return m_storage.remove(item.targetPath);
    }
    if (const auto place = m_places.find(item.file.get()); place != m_places.end()) {
        return DRStepOutcome::doneAt(place->second);
    }
    DRStepOutcome outcome = m_storage.copy(*item.file, item.targetPath, progress);
    if (outcome.kind == DRStepOutcome::Kind::Done) {
        m_places.emplace(item.file.get(), outcome.place);
    }
    return outcome;
}

void DRFileRun::itemDidEnd(std::size_t index, const DRStepOutcome& outcome)
{
    const DRDCFilePointer& file = m_items[index].file;
    if (outcome.kind != DRStepOutcome::Kind::Done) {
        m_failures.push_back({.file = file, .reason = outcome.reason});
        return;
    }
    // Here, between the works on two files, so that the work on a playlist may read it without a lock.
    if (!outcome.place.isEmpty()) {
        file->setMetadata(outcome.place, QLatin1StringView(DRDCFile::kPlaceOnPhone));
    }
}

void DRFileRun::didEnd()
{
    if (m_handler) {
        m_handler(m_failures);
    }
}
