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
    return item.isDeletion ? m_storage.remove(item.targetPath) : m_storage.copy(*item.file, item.targetPath, progress);
}

void DRFileRun::itemDidEnd(std::size_t index, const DRStepOutcome& outcome)
{
    if (outcome.kind != DRStepOutcome::Kind::Done) {
        m_failures.push_back({.file = m_items[index].file, .reason = outcome.reason});
    }
}

void DRFileRun::didEnd()
{
    if (m_handler) {
        m_handler(m_failures);
    }
}
