#pragma once

#include "platform/folder_phone/DRFolderPhoneRoot.h"

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <sys/stat.h>

/// How much the files of a phone in a folder take, remembered as long as no folder of the phone changes. For any thread.
class DRUsedSpace {
public:
    explicit DRUsedSpace(DRFolderPhoneRoot root);

    /// Bytes of the regular files below packets and storage, not following links. Takes some microseconds for each file
    /// when it counts, and for each folder when it knows. That a file has grown in its place is noticed with the next
    /// change of a folder.
    [[nodiscard]] quint64 bytes();

    /// The same, counted now.
    [[nodiscard]] static quint64 bytesNow(const DRFolderPhoneRoot& root);

private:
    /// A folder and the time of its last change; none when it is not there.
    struct Folder {
        std::string path;
        std::optional<timespec> changed;
    };
    struct Count {
        quint64 bytes = 0;
        std::vector<Folder> folders;
    };

    static void addContent(const std::string& folder, Count& count);
    [[nodiscard]] static Count count(const DRFolderPhoneRoot& root);
    [[nodiscard]] static bool isUnchanged(const Folder& folder);

    DRFolderPhoneRoot m_root;
    std::mutex m_mutex; ///< guards the count
    std::optional<Count> m_known;
};
