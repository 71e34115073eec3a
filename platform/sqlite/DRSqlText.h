#pragma once

#include <optional>

#include <QByteArray>
#include <QString>

#include "platform/sqlite/DRSqlValue.h"

/// Texts that statements take in other ways than as a plain bound value. The outcome is that of the text put into the
/// statement as it stands; the text itself never becomes SQL.
namespace DRSqlText {

/// The text that a statement compares when `text` stands between single quotes without escaping: itself without quotes;
/// with each pair collapsed when all runs of `'` are even; none when a run is odd, for then the statement is malformed
/// and counts as failed without being run. A null text is "(null)". Bind the answer.
[[nodiscard]] std::optional<QString> insideSingleQuotes(const QString& text);

/// The value that a statement sees when `text` stands in it unquoted as its last operand, such as behind LIKE: an integer or real
/// for one number with at most one sign, hexadecimal too; a text for one literal in single quotes, each pair of quotes inside
/// collapsed. Spaces, tabs and line ends around it and behind the sign do not count. Bind the answer.
///
/// None for everything else; the statement then counts as failed and is not run. That leaves out what SQLite would run as SQL:
/// expressions, comments, keywords, names of columns. A text in double quotes is such a name too: only where no column is called so,
/// and only in some builds of SQLite, is it a literal, and "filename" would be every row's own.
[[nodiscard]] std::optional<DRSqlValue> unquotedOperand(const QString& text);

/// A table or column name that was read from a database, in double quotes, fit to be put into a statement. None unless
/// it is
/// `[A-Za-z_][A-Za-z0-9_]*`; the statement then counts as failed.
[[nodiscard]] std::optional<QString> quotedName(const QString& name);

/// Whether the name is a word of SQLite's language, in any letter case.
[[nodiscard]] bool isKeyword(const QByteArray& name);

} // namespace DRSqlText
