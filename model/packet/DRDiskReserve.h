#pragma once

#include <QtGlobal>

/// Watches the free space of a disk while a packet's content is written, so that one that inflates to more than the
/// disk holds ends before the disk is full for everybody else. Used by one thread; the descriptor must outlive it.
class DRDiskReserve {
public:
    /// The reserve is 64 MiB, or a hundredth of a disk that is smaller than 6.25 GiB.
    explicit DRDiskReserve(int folderDescriptor);
    DRDiskReserve(int folderDescriptor, quint64 reserveBytes);

    /// Whether `bytes` more may be written. Asks the disk every 16 MiB.
    [[nodiscard]] bool allows(quint64 bytes);

private:
    int m_folderDescriptor;
    quint64 m_reserveBytes;
    quint64 m_allowedBytes = 0; ///< that need no further question
};
