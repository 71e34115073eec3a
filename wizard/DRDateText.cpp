#include "wizard/DRDateText.h"

#include <QLocale>

#include <unicode/udat.h>

#include <array>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

struct CloseDateFormat {
    void operator()(UDateFormat* format) const { udat_close(format); }
};

/// ICU knows no locale "C"; its own name for it is that of the POSIX locale.
QByteArray icuLocaleName()
{
    const QLocale locale;
    return locale.language() == QLocale::C ? QByteArrayLiteral("en_US_POSIX") : locale.name().toUtf8();
}

/// Date and time in the style; a null text when the locale's data cannot be had.
QString textInStyle(const QDateTime& moment, UDateFormatStyle style)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UDateFormat, CloseDateFormat> format(
        udat_open(style, style, icuLocaleName().constData(), nullptr, 0, nullptr, 0, &status));
    std::array<UChar, 256> text{};
    const auto length = udat_format(format.get(), static_cast<UDate>(moment.toMSecsSinceEpoch()), text.data(),
                                    static_cast<int32_t>(text.size()), nullptr, &status);
    if (U_FAILURE(status) || length > static_cast<int32_t>(text.size())) {
        return {};
    }
    return QStringView(text.data(), length).toString();
}

} // namespace

QString mediumDateText(const QDateTime& moment)
{
    const QString text = textInStyle(moment, UDAT_MEDIUM);
    return text.isNull() ? moment.toLocalTime().toString(u"yyyy-MM-dd HH:mm:ss"_s) : text;
}

QString shortDateText(const QDateTime& moment)
{
    if (!moment.isValid()) {
        return {};
    }
    const QString text = textInStyle(moment, UDAT_SHORT);
    return text.isNull() ? moment.toLocalTime().toString(u"yyyy-MM-dd HH:mm"_s) : text;
}
