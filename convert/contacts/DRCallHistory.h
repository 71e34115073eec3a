#pragma once

#include "convert/contacts/DRImportedCall.h"

#include <vector>

/// The call history of an iPhone backup: "WirelessDomain-Library/CallHistory/call_history.db", table `call`, which
/// systems 4 to 7 keep. Later systems keep their calls in "HomeDomain-Library/CallHistoryDB/CallHistory.storedata",
/// which is not read.
namespace DRCallHistory {

struct Reading {
    std::vector<DRImportedCall> calls; ///< in row order; empty when the backup holds no call history
    QString problem;                   ///< why calls are missing, for a person to read; null when none are
};

[[nodiscard]] Reading read(const QString& backupPath, const QString& temporaryFolder);

} // namespace DRCallHistory
