#pragma once

#include <QString>

#include <functional>

class DRClock;

/// How making a sample went.
struct DRSampleResult {
    bool isWritten = false;
    QString message;      ///< when not written: what is the matter, in one sentence for a person
    QString backupFolder; ///< the iPhone backup's own folder
    QString phoneFolder;
    QString musicLibrary; ///< the music library's file
};

/// Told after each part of a sample: how many are done of how many, and which one it was.
using DRSampleProgress = std::function<void(int done, int total, const QString& part)>;

/// Writes a made-up iPhone backup into `directory`/backups, a made-up phone into `directory`/phone and a made-up computer's
/// music library into `directory`/music, all complete or none. The directory is made when missing. `scale` (at least 1)
/// multiplies the content; the same scale at the same time of `clock` gives the same content, but for the directory's
/// name, which the music library tells. The backup's date is that time. `progress` may be empty. Refused when one of the
/// three folders exists and is not empty.
[[nodiscard]] DRSampleResult
writeSample(const QString& directory, int scale, const DRClock& clock, const DRSampleProgress& progress = {});
