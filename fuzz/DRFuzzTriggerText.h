#pragma once

#include <QString>

class DRFuzzInput;

/// The text of one trigger of a message database, made of the pieces that real ones and hostile ones are made of, as the input
/// chooses. Most are accepted by SQLite, which random text never is. None reads the clock, so that two runs are alike.
[[nodiscard]] QString fuzzTriggerText(DRFuzzInput& input, const QString& name);
