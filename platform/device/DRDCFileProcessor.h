#pragma once

#include <optional>

#include <QByteArray>

class DRDCFile;

/// Makes the content that reaches the phone in place of a file's own, such as a playlist's text.
class DRDCFileProcessor {
public:
    virtual ~DRDCFileProcessor() = default;

    /// The bytes to write to the phone for this file; none when they cannot be made, which fails the file's copy.
    /// Called on the background queue.
    [[nodiscard]] virtual std::optional<QByteArray> contentForFile(const DRDCFile& file) const = 0;
};
