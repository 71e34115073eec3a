#pragma once

#include <QString>

#include <optional>

/// What a tick box says of one kind of content.
struct DRMGSelectDataLabel {
    QString stringValue;                ///< holds "%i" for the count
    std::optional<quint64> dataCounter; ///< none when the count is not known
    std::optional<quint64> sizeBytes;   ///< appended when set
    QString unknownCount;               ///< stands for the count that is not known
};

/// The label with its count and size, such as "Photos: 12 (3.40 MiB)". The count is written as a signed 32-bit integer,
/// without grouping: kept, larger counts wrap around.
[[nodiscard]] QString selectDataText(const DRMGSelectDataLabel& label);
