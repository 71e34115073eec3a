#pragma once

#include <QString>

class DRFileDescriptor;

/// Whether the packet file, which this program has just written, reads back as exactly the archive in `archive`: a
/// header that is accepted, a whole compression, the same bytes, and nothing after them. False also when either cannot
/// be read.
[[nodiscard]] bool packetHoldsArchive(const QString& packet, const DRFileDescriptor& archive);
