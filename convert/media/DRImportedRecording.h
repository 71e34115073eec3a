#pragma once

#include <QDateTime>
#include <QString>

/// One recording of the iPhone's voice memos.
struct DRImportedRecording {
    QString filePath;
    QDateTime date;
    QString persistentId; ///< hexadecimal, lower case, without leading zeros

    bool operator==(const DRImportedRecording&) const = default;
};
