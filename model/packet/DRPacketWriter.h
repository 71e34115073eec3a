#pragma once

#include <cstddef>
#include <span>

#include <QByteArray>

#include "model/packet/DRParallelDeflater.h"

class DRFileDescriptor;

/// Writes an archive in one pass to two files: as it is, and deflated as a packet. Both descriptors must outlive it.
class DRPacketWriter {
public:
    /// Writes the packet's header at once.
    DRPacketWriter(const DRFileDescriptor& archive, const DRFileDescriptor& packet);

    /// Adds the open file under that path, with its time. False when it cannot be read, has changed meanwhile, or the
    /// disk is full.
    [[nodiscard]] bool addFile(const QByteArray& path, const DRFileDescriptor& file);

    /// Ends archive and packet. False when something could not be written; both files are worthless then.
    [[nodiscard]] bool finish();

private:
    [[nodiscard]] std::span<char> room();
    [[nodiscard]] bool advance(std::size_t size);
    [[nodiscard]] bool put(std::span<const char> bytes);
    [[nodiscard]] bool putZeros(std::size_t size);
    [[nodiscard]] bool putContent(const DRFileDescriptor& file, quint64 size);
    [[nodiscard]] bool commitChunk();

    const DRFileDescriptor& m_archive;
    bool m_isHeaderWritten; ///< before the deflater begins its stream
    DRParallelDeflater m_deflater;
    std::span<char> m_chunk;  ///< the chunk that is being filled
    std::size_t m_filled = 0; ///< bytes of it
};
