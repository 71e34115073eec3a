#pragma once

#include <QDateTime>
#include <QString>

/// The day of a birthday or anniversary in the computer's time zone: "yyyy-MM-dd", or "--MM-dd" when the year is 1799 or
/// less, for iPhones keep days without a year in the year 1604. Null for an invalid date.
[[nodiscard]] QString contactDateText(const QDateTime& date);
