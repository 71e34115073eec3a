#pragma once

#include <memory>
#include <vector>

#include <QString>
#include <QStringList>

#include "platform/device/DRDCDeviceTask.h"

class DRMigrateAndroidBackupEntry;

/// How a transfer that reached the closing page ended.
struct DRTransferResult {
    int errorState = 0;                                      ///< as `DRMGSequenceStepComplete::ErrorState`
    int errorCode = 0;                                       ///< as of the transfer step
    QStringList errorDetails;                                ///< why it failed, as far as it is known, for a person
    std::vector<DRDCPacketProblem> skippedPackets;           ///< what was not moved though the run went on
    std::shared_ptr<DRMigrateAndroidBackupEntry> phoneEntry; ///< null when none was made
    QString phoneBackupName;                                 ///< empty when the phone was not backed up
    QString phoneBackupPath;                                 ///< the folder; empty when none was made
};
