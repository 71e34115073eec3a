#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

/// Text that comes from outside as UTF-8, and text that goes there. A leading U+FEFF belongs to the text and stays.
namespace DRUtf8 {

/// The bytes as text whatever they hold: invalid sequences become U+FFFD, NUL characters are left out. Never null.
[[nodiscard]] QString decode(QByteArrayView bytes);

/// The bytes as text exactly; none when they are not valid UTF-8.
[[nodiscard]] std::optional<QString> decodeStrictly(QByteArrayView bytes);

/// The text as valid UTF-8: lone surrogates become U+FFFD, NUL characters are left out. Never null.
[[nodiscard]] QByteArray encode(const QString& text);

} // namespace DRUtf8
