#include "platform/device/DRDCDeviceTask.h"

QStringList DRDCTaskResult::packetsWithErrors() const
{
    QStringList packetIDs;
    for (const DRDCPacketProblem& failure : failures) {
        packetIDs.append(failure.packetID);
    }
    return packetIDs;
}
