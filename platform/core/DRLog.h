#pragma once

#include <QLoggingCategory>
#include <QString>

/// The program's diagnostic log. Lines carry no private content: no texts, names or numbers of people.
Q_DECLARE_LOGGING_CATEGORY(lcMigrate)

namespace DRLog {

/// Which messages reach the error stream.
enum class Verbosity { Quiet, Normal, Verbose };

/// Sends Qt's messages to the error stream (warnings and errors; everything when Verbose; nothing when Quiet) and, when
/// `logFile` is not empty, all of them with their time to that file, which is appended to. False when it cannot be
/// opened. Control characters are replaced, so that a hostile file name cannot steer the terminal. Call once, at start.
[[nodiscard]] bool install(Verbosity verbosity, const QString& logFile);

} // namespace DRLog

/// The text with control characters (C0, C1, bidirectional overrides) replaced by "?", fit for a terminal or a log
/// line.
[[nodiscard]] QString withoutControlCharacters(const QString& text);
