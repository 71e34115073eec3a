#pragma once

#include <QString>

/// What became of one packet or file.
struct DRStepOutcome {
    enum class Kind { Done, Skipped, Failed };

    Kind kind = Kind::Done;
    QString reason; ///< of a skip or failure, for a person to read
    QString place;  ///< of a copied file: where it lies now, relative to the phone's storage

    [[nodiscard]] static DRStepOutcome doneAt(const QString& place) { return {Kind::Done, {}, place}; }
    [[nodiscard]] static DRStepOutcome skipped(const QString& reason) { return {Kind::Skipped, reason, {}}; }
    [[nodiscard]] static DRStepOutcome failed(const QString& reason) { return {Kind::Failed, reason, {}}; }
};
