#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

/// A short made-up film: a slide show of landscapes without sound.
struct DRSampleMovie {
    /// Which comes first in the file: the description of the film or its pictures. With the description first, whoever
    /// shortens it moves the pictures, whose places it names.
    enum class Order { DescriptionFirst, PicturesFirst };
    enum class Container { QuickTime, Mp4 };

    quint64 seed = 0;  ///< another film for each
    int width = 160;   ///< pixels, 1 to 32767
    int height = 120;  ///< the same
    int pictures = 4;  ///< how many, half a second each; at least 1
    QDateTime created; ///< from 1904 to 2040
    QString title;     ///< empty for none
    QString location;  ///< empty for none, else degrees north and east as in ISO 6709, such as "+59.3293+018.0686/"
    Order order = Order::DescriptionFirst;
    Container container = Container::QuickTime;
};

/// The film as a file: one video track whose pictures are JPEG, each in a chunk of its own. Title and location stand in
/// the box "moov/udta", which is missing when there is neither.
[[nodiscard]] QByteArray encodeSampleMovie(const DRSampleMovie& movie);
