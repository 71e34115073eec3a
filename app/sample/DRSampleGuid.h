#pragma once

#include <QString>

/// A text of the form of a UUID in capitals, another for each `thing`, such as "note 7"; the same in every run.
[[nodiscard]] QString sampleGuid(const QString& thing);
