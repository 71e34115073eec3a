#include "platform/contacts/DRContactDate.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLastYearOfDaysWithoutYear = 1799;

// 0001-01-02 and 9998-12-30 UTC, so that the local day is in those years, too.
constexpr qint64 kFirstMoment = -62135510400000;
constexpr qint64 kLastMoment = 253370592000000;

} // namespace

QString contactDateText(const QDateTime& date)
{
    if (!date.isValid()) {
        return {};
    }
    const qint64 moment = std::clamp(date.toMSecsSinceEpoch(), kFirstMoment, kLastMoment);
    const QDate day = QDateTime::fromMSecsSinceEpoch(moment).date();
    return day.toString(day.year() <= kLastYearOfDaysWithoutYear ? u"--MM-dd"_s : u"yyyy-MM-dd"_s);
}
