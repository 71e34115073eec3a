#pragma once

#include <QDateTime>
#include <QString>

/// The day of a birthday or anniversary in the computer's time zone: "yyyy-MM-dd", or "--MM-dd" when the year is 1799 or
/// less, for iPhones keep days without a year in the year 1604. A moment outside the years 1 to 9998 counts as the nearest
/// one within, so that a card can hold it in any time zone. Null for an invalid date.
[[nodiscard]] QString contactDateText(const QDateTime& date);
