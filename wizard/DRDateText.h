#pragma once

#include <QDateTime>
#include <QString>

/// The moment in local time, written in the medium date style and the medium time style of the current locale, such as
/// "6 May 2014, 12:53:09". Only when the locale's data cannot be had: "2014-05-06 12:53:09".
[[nodiscard]] QString mediumDateText(const QDateTime& moment);

/// The same in the short styles, such as "06/05/2014, 12:53"; else "2014-05-06 12:53". A null text for a null moment.
[[nodiscard]] QString shortDateText(const QDateTime& moment);
