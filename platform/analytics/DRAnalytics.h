#pragma once

#include <QString>
#include <QStringList>

/// Takes usage events. They stay on this computer.
class DRAnalytics {
public:
    virtual ~DRAnalytics() = default;

    /// Records an event. An empty label means none.
    virtual void trackEvent(const QString& category, const QString& action, const QString& label) = 0;

    /// Records that a page was shown, as the components of its path, such as "migrate", "welcome".
    virtual void trackPageView(const QStringList& components) = 0;
};
