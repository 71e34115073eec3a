#pragma once

#include <QString>

class DRAnalytics;

/// The wizard's usage events, all of the category "Migrate". They carry no private content.

/// Any event; an empty label means none.
void DRMGAnalyticsSendEvent(DRAnalytics& analytics, const QString& action, const QString& label);

/// What kept the user from going on.
enum class DRMGErrorEvent : qint32 {
    NotEnoughSpace = 1,
    NoBackup = 2,
    EncryptedBackup = 3,
    SystemTooOld = 4,
    PhoneIncompatible = 5,
    BackupFailed = 6,
    RestoreFailed = 7,
};

/// "Sequence error" with the label "Error: " and the code.
void DRMGAnalyticsSendErrorEvent(DRAnalytics& analytics, DRMGErrorEvent code);

/// The version of the iPhone's system, such as "6.1.3".
void DRMGAnalyticsSendIOSVersionEvent(DRAnalytics& analytics, const QString& version);

/// The iPhone's product type, such as "iPhone4,1".
void DRMGAnalyticsSendIPhoneHardwareVersionEvent(DRAnalytics& analytics, const QString& productType);

void DRMGAnalyticsSendSeveralIPhonesDisplayedEvent(DRAnalytics& analytics);
void DRMGAnalyticsSendBackupAndRestoreClickedEvent(DRAnalytics& analytics);
void DRMGAnalyticsSendSequenceStartedEvent(DRAnalytics& analytics);
void DRMGAnalyticsSendSequenceCancelledEvent(DRAnalytics& analytics);
void DRMGAnalyticsSendSequenceCompletedEvent(DRAnalytics& analytics);
