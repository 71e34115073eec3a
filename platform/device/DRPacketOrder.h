#pragma once

#include <vector>

#include <QString>
#include <QStringList>

/// One packet in the order of a backup or restore.
struct DRPacketPosition {
    QString packetID;
    QString dataType;              ///< the data-type key; empty for a packet that this program does not know
    bool isFirstOfDataType = true; ///< the packets of one data type follow one another
    bool isLastOfDataType = true;

    bool operator==(const DRPacketPosition&) const = default;
};

/// The packets, each once, by the position of their data type in `sortOrder`; then those of other data types, then
/// unknown ones. Packets of equal rank keep their order.
[[nodiscard]] std::vector<DRPacketPosition> packetsInOrder(const QStringList& packetIDs, const QStringList& sortOrder);
