#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

/// The lines of a vCard 3.0 (RFC 2426), from texts whatever they hold.
namespace DRVCardText {

/// The lines between which a card stands.
inline constexpr QByteArrayView kBeginLine("BEGIN:VCARD\r\n");
inline constexpr QByteArrayView kEndLine("END:VCARD\r\n");

/// The text as one value: backslash, semicolon and comma escaped, each line break (CR LF, CR or LF) written as "\n",
/// other control characters but the tabulator left out.
[[nodiscard]] QString escaped(const QString& text);

/// One property: its name with its parameters, such as "TEL;TYPE=CELL", and its escaped value, as folded UTF-8 lines.
[[nodiscard]] QByteArray property(const QString& nameAndParameters, const QString& value);

/// A line of UTF-8 without line breaks, as lines of at most 75 bytes, each ended by CR LF: folded between characters,
/// each further line begins with one blank that does not belong to the text. A marker "BEGIN:VCARD" or "END:VCARD" in it,
/// in any letter case, is broken by a fold, so that whoever looks for the markers of cards does not find it.
[[nodiscard]] QByteArray folded(QByteArrayView line);

/// A parameter ";TYPE=..." with this value, in double quotes where the format needs them; control characters and double
/// quotes, which no parameter can hold, become blanks and apostrophes.
[[nodiscard]] QString typeParameter(const QString& value);

} // namespace DRVCardText
