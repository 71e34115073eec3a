#pragma once

#include "platform/analytics/DRAnalytics.h"

#include <QJsonObject>

class DRClock;

/// Appends usage events to a file, one JSON object per line: {"time", "category", "action", "label"} or {"time",
/// "page"}. A file that cannot be written is told once in the log and then ignored: usage events never stop a
/// migration. Beyond 1 MiB the file is renamed to end in ".old", replacing the one before, and a new one begun.
class DRLocalAnalytics final : public DRAnalytics {
public:
    /// `path`'s folder is made, with mode 0700, when missing.
    DRLocalAnalytics(QString path, const DRClock& clock);

    void trackEvent(const QString& category, const QString& action, const QString& label) override;
    void trackPageView(const QStringList& components) override;

private:
    void append(const QJsonObject& event);

    QString m_path;
    const DRClock& m_clock;
    bool m_failed = false;
};
