#include "wizard/DRMGAnalytics.h"

#include "platform/analytics/DRAnalytics.h"

using namespace Qt::StringLiterals;

void DRMGAnalyticsSendEvent(DRAnalytics& analytics, const QString& action, const QString& label)
{
    analytics.trackEvent(u"Migrate"_s, action, label);
}

void DRMGAnalyticsSendErrorEvent(DRAnalytics& analytics, DRMGErrorEvent code)
{
    DRMGAnalyticsSendEvent(analytics, u"Sequence error"_s, u"Error: %1"_s.arg(static_cast<qint64>(code)));
}

void DRMGAnalyticsSendIOSVersionEvent(DRAnalytics& analytics, const QString& version)
{
    DRMGAnalyticsSendEvent(analytics, u"iOS Version"_s, version);
}

void DRMGAnalyticsSendIPhoneHardwareVersionEvent(DRAnalytics& analytics, const QString& productType)
{
    DRMGAnalyticsSendEvent(analytics, u"iPhone Hardware Version"_s, productType);
}

void DRMGAnalyticsSendSeveralIPhonesDisplayedEvent(DRAnalytics& analytics)
{
    DRMGAnalyticsSendEvent(analytics, u"Several iPhones displayed"_s, {});
}

void DRMGAnalyticsSendBackupAndRestoreClickedEvent(DRAnalytics& analytics)
{
    DRMGAnalyticsSendEvent(analytics, u"Backup and restore clicked"_s, {});
}

void DRMGAnalyticsSendSequenceStartedEvent(DRAnalytics& analytics)
{
    DRMGAnalyticsSendEvent(analytics, u"Sequence started"_s, {});
}

void DRMGAnalyticsSendSequenceCancelledEvent(DRAnalytics& analytics)
{
    DRMGAnalyticsSendEvent(analytics, u"Sequence cancelled"_s, {});
}

void DRMGAnalyticsSendSequenceCompletedEvent(DRAnalytics& analytics)
{
    DRMGAnalyticsSendEvent(analytics, u"Sequence completed"_s, {});
}
