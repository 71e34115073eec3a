#include "model/packet/DRDiskReserve.h"

#include <sys/statvfs.h>

#include <algorithm>

namespace {

constexpr quint64 kMebibyte = quint64{1024} * 1024;
constexpr quint64 kLargestReserve = 64 * kMebibyte;
constexpr quint64 kQuestionInterval = 16 * kMebibyte;

/// Sizes of a disk in bytes; zeros when it does not tell.
struct DiskSpace {
    quint64 total = 0;
    quint64 available = 0;
};

DiskSpace diskSpace(int descriptor)
{
    struct statvfs status {};
    if (fstatvfs(descriptor, &status) != 0) {
        return {};
    }
    return {status.f_blocks * status.f_frsize, status.f_bavail * status.f_frsize};
}

} // namespace

DRDiskReserve::DRDiskReserve(int folderDescriptor)
    : DRDiskReserve(folderDescriptor, std::min(kLargestReserve, diskSpace(folderDescriptor).total / 100))
{
}

DRDiskReserve::DRDiskReserve(int folderDescriptor, quint64 reserveBytes)
    : m_folderDescriptor(folderDescriptor), m_reserveBytes(reserveBytes)
{
}

bool DRDiskReserve::allows(quint64 bytes)
{
    if (bytes > m_allowedBytes) {
        const quint64 available = diskSpace(m_folderDescriptor).available;
        const quint64 usable = available > m_reserveBytes ? available - m_reserveBytes : 0;
        m_allowedBytes = std::min(usable, std::max(bytes, kQuestionInterval));
    }
    if (bytes > m_allowedBytes) {
        return false;
    }
    m_allowedBytes -= bytes;
    return true;
}
