#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

/// A short made-up recording or song.
struct DRSampleSound {
    QByteArray bytes;
    qint64 milliseconds = 0;
    int samplesPerSecond = 0;

    /// A simple tune of about half a second per `verses` (at least 1), another for each seed: an M4A file, lossless.
    /// `created`: from 1904 to 2040.
    [[nodiscard]] static DRSampleSound tune(quint64 seed, int verses, const QDateTime& created);

    /// Two seconds of silence as MP3, with these texts at its beginning.
    [[nodiscard]] static DRSampleSound silence(const QString& title, const QString& artist, const QString& album);
};
