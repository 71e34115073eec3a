#include "platform/folder_phone/DRTakenNames.h"

#include "platform/folder_phone/DRFileContent.h"
#include "platform/folder_phone/DRMediaPlacement.h"
#include "platform/folder_phone/DRNoFollow.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace {

bool isTaken(const DRFileDescriptor& folder, const QString& name)
{
    struct stat status {};
    return ::fstatat(folder.number(), nativePath(name).constData(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

} // namespace

DRTakenNames::Place
DRTakenNames::placeFor(const DRFileDescriptor& source, const DRFileDescriptor& folder, const QString& name)
{
    lookAtNewNames(folder, name);
    const Place free{.number = m_known < kMaximumNumber ? m_known + 1 : 0, .isFilled = false};
    if (m_numbers.empty()) {
        return free; // the usual case, in which the source need not be looked at
    }
    const auto [first, last] = m_numbers.equal_range(DRFileContent::likeness(source));
    for (auto candidate = first; candidate != last; ++candidate) {
        const int number = candidate->second;
        const DRFileDescriptor existing = DRNoFollow::openFile(folder, DRMediaPlacement::numberedName(name, number));
        if (existing.isOpen() && DRFileContent::isSame(source, existing)) {
            return {.number = number, .isFilled = true};
        }
    }
    return free;
}

void DRTakenNames::lookAtNewNames(const DRFileDescriptor& folder, const QString& name)
{
    while (m_known < kMaximumNumber) {
        const QString candidate = DRMediaPlacement::numberedName(name, m_known + 1);
        if (!isTaken(folder, candidate)) {
            return;
        }
        ++m_known;
        if (const DRFileDescriptor existing = DRNoFollow::openFile(folder, candidate); existing.isOpen()) {
            m_numbers.emplace(DRFileContent::likeness(existing), m_known);
        }
    }
}
