#pragma once

#include <QString>

/// The keys of the steps that put a phone's apps back.
namespace DRMGRestoreKeys {

inline const QString kChoose = QStringLiteral("restoreChoose");
inline const QString kPutBack = QStringLiteral("restorePutBack");
inline const QString kOutcome = QStringLiteral("restoreOutcome");

} // namespace DRMGRestoreKeys

/// The identifiers of their step groups.
namespace DRMGRestoreGroups {

inline constexpr int kChoose = 0;
inline constexpr int kPutBack = 1;
inline constexpr int kFinish = 2;

} // namespace DRMGRestoreGroups
