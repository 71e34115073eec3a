#pragma once

#include <QString>

/// The keys of the wizard's steps.
namespace DRMGStepKeys {

inline const QString kWelcome = QStringLiteral("welcome");
inline const QString kSelectBackup = QStringLiteral("selectBackup");
inline const QString kSelectData = QStringLiteral("selectData");
inline const QString kTransfer = QStringLiteral("transfer");
inline const QString kComplete = QStringLiteral("complete");
inline const QString kNewBackupNeeded = QStringLiteral("newBackupNeeded");
inline const QString kConnectPhone = QStringLiteral("connectPhone");
inline const QString kMemoryWarning = QStringLiteral("memoryWarning");
inline const QString kPhoneIncompatible = QStringLiteral("phoneIncompatible");

} // namespace DRMGStepKeys

/// The identifiers of the wizard's step groups.
namespace DRMGStepGroups {

inline constexpr int kWelcome = 0;
inline constexpr int kSelectData = 1;
inline constexpr int kTransfer = 2;
inline constexpr int kFinish = 3;

} // namespace DRMGStepGroups
