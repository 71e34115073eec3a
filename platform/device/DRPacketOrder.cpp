#include "platform/device/DRPacketOrder.h"

#include "platform/device/DRBRBackupRestoreController.h"

#include <algorithm>

namespace {

qsizetype rankOfDataType(const QString& dataType, const QStringList& order)
{
    const qsizetype rank = order.indexOf(dataType);
    return rank < 0 ? order.size() : rank;
}

/// The given order, completed by the data types of the packets in the order of their appearance, so that the packets of
/// every data type come to stand together.
QStringList completeOrder(const QStringList& sortOrder, const std::vector<DRPacketPosition>& packets)
{
    QStringList order = sortOrder;
    order.removeAll(QString());
    for (const DRPacketPosition& packet : packets) {
        if (!packet.dataType.isEmpty() && !order.contains(packet.dataType)) {
            order.append(packet.dataType);
        }
    }
    return order;
}

} // namespace

std::vector<DRPacketPosition> packetsInOrder(const QStringList& packetIDs, const QStringList& sortOrder)
{
    std::vector<DRPacketPosition> packets;
    for (const QString& packetID : packetIDs) {
        const bool isKnown = std::ranges::find(packets, packetID, &DRPacketPosition::packetID) != packets.end();
        if (!isKnown) {
            packets.push_back(
                {.packetID = packetID, .dataType = DRBRBackupRestoreController::dataTypeOfPacket(packetID)});
        }
    }
    const QStringList order = completeOrder(sortOrder, packets);
    std::ranges::stable_sort(
        packets, {}, [&order](const DRPacketPosition& packet) { return rankOfDataType(packet.dataType, order); });
    for (std::size_t index = 1; index < packets.size(); ++index) {
        const bool continues = packets[index].dataType == packets[index - 1].dataType;
        packets[index].isFirstOfDataType = !continues;
        packets[index - 1].isLastOfDataType = !continues;
    }
    return packets;
}
