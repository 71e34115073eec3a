#include "platform/contacts/DRContactDate.h"

using namespace Qt::StringLiterals;

QString contactDateText(const QDateTime& date)
{
    constexpr int kLastYearOfDaysWithoutYear = 1799;
    if (!date.isValid()) {
        return {};
    }
    const QDate day = date.toLocalTime().date();
    return day.toString(day.year() <= kLastYearOfDaysWithoutYear ? u"--MM-dd"_s : u"yyyy-MM-dd"_s);
}
