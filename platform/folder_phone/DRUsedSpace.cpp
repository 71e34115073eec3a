#include "platform/folder_phone/DRUsedSpace.h"

#include "platform/core/DRFileDescriptor.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

namespace {

/// Some file systems note times that coarsely: a folder that has changed just before may change again unnoticed.
constexpr std::time_t kCoarsestSeconds = 2;

std::optional<timespec> timeOfChange(const std::string& folder)
{
    struct stat status = {};
    const bool isFolder = ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    return isFolder ? std::optional(status.st_mtim) : std::nullopt;
}

quint64 sizeOf(const fs::directory_entry& file)
{
    std::error_code error;
    const std::uintmax_t size = file.file_size(error);
    return error ? 0 : quint64{size};
}

} // namespace

DRUsedSpace::DRUsedSpace(DRFolderPhoneRoot root) : m_root(std::move(root)) {}

quint64 DRUsedSpace::bytes()
{
    const std::scoped_lock lock(m_mutex);
    if (m_known && std::ranges::all_of(m_known->folders, &DRUsedSpace::isUnchanged)) {
        return m_known->bytes;
    }
    const std::time_t began = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    Count counted = count(m_root);
    const quint64 bytes = counted.bytes;
    const bool isSettled = std::ranges::all_of(counted.folders, [began](const Folder& folder) {
        return !folder.changed || folder.changed->tv_sec < began - kCoarsestSeconds;
    });
    m_known = isSettled ? std::optional(std::move(counted)) : std::nullopt;
    return bytes;
}

quint64 DRUsedSpace::bytesNow(const DRFolderPhoneRoot& root)
{
    return count(root).bytes;
}

DRUsedSpace::Count DRUsedSpace::count(const DRFolderPhoneRoot& root)
{
    Count count;
    for (const QString& name : {DRFolderPhoneRoot::kPacketsFolder, DRFolderPhoneRoot::kStorageFolder}) {
        addContent(nativePath(root.path() + u'/' + name).toStdString(), count);
    }
    return count;
}

/// Each folder's time is taken before its content is read.
void DRUsedSpace::addContent(const std::string& folder, Count& count)
{
    count.folders.push_back({.path = folder, .changed = timeOfChange(folder)});
    if (!count.folders.back().changed) {
        return;
    }
    std::error_code error;
    fs::recursive_directory_iterator entries(folder, fs::directory_options::skip_permission_denied, error);
    while (!error && entries != fs::end(entries)) {
        std::error_code unknown;
        const fs::file_type type = entries->symlink_status(unknown).type();
        if (type == fs::file_type::directory) {
            const std::string& path = entries->path().native();
            count.folders.push_back({.path = path, .changed = timeOfChange(path)});
        }
        count.bytes += type == fs::file_type::regular ? sizeOf(*entries) : 0;
        entries.increment(error);
    }
}

bool DRUsedSpace::isUnchanged(const Folder& folder)
{
    const auto changed = timeOfChange(folder.path);
    return changed.has_value() == folder.changed.has_value() &&
           (!changed || (changed->tv_sec == folder.changed->tv_sec && changed->tv_nsec == folder.changed->tv_nsec));
}
