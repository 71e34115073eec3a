#pragma once

#include <optional>

#include <QString>

/// Texts that statements take in other ways than as a plain bound value. The outcome is that of the text put into the
/// statement as it stands; the text itself never becomes SQL.
namespace DRSqlText {

/// The text that a statement compares when `text` stands between single quotes without escaping: itself without quotes;
/// with each pair collapsed when all runs of `'` are even; none when a run is odd, for then the statement is malformed
/// and counts as failed without being run. A null text is "(null)". Bind the answer.
[[nodiscard]] std::optional<QString> insideSingleQuotes(const QString& text);

/// A table or column name that was read from a database, in double quotes, fit to be put into a statement. None unless
/// it is
/// `[A-Za-z_][A-Za-z0-9_]*`; the statement then counts as failed.
[[nodiscard]] std::optional<QString> quotedName(const QString& name);

} // namespace DRSqlText
