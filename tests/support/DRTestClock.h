#pragma once

#include "platform/core/DRClock.h"

/// A clock that stands until a test moves it. Starts at 2014-05-06 07:08:09 UTC.
class DRTestClock final : public DRClock {
public:
    [[nodiscard]] QDateTime now() const override { return m_now; }
    void set(const QDateTime& now) { m_now = now; }

private:
    QDateTime m_now{QDate(2014, 5, 6), QTime(7, 8, 9), Qt::UTC};
};
