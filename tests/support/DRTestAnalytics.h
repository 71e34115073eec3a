#pragma once

#include "platform/analytics/DRAnalytics.h"

#include <utility>

/// Keeps usage events as texts: "category|action|label" for an event, "page:a/b" for a page view.
class DRTestAnalytics final : public DRAnalytics {
public:
    void trackEvent(const QString& category, const QString& action, const QString& label) override
    {
        m_events.append(QStringList{category, action, label}.join(u'|'));
    }
    void trackPageView(const QStringList& components) override
    {
        m_events.append(QStringLiteral("page:") + components.join(u'/'));
    }

    /// What was tracked since the last call, in order.
    [[nodiscard]] QStringList takeEvents() { return std::exchange(m_events, {}); }

private:
    QStringList m_events;
};
