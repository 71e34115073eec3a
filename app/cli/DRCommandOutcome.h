#pragma once

#include <variant>

#include <QString>

#include "app/cli/DRExitCode.h"

/// How a command ended; for an error also what happened and why, and what to do or type next.
struct DRCommandOutcome {
    DRExitCode code = DRExitCode::Done;
    QString message;
    QString nextStep;
    bool isByChoice = false; ///< somebody stopped it or said no, which is no error
};

/// What was asked for, or the error that prevents it.
template <typename T> using DRResult = std::variant<T, DRCommandOutcome>;
