#pragma once

#include <QByteArray>
#include <QtEndian>

/// A second reading of films and sounds, apart from the program's own.
namespace DRBoxReading {

inline quint32 number(const QByteArray& bytes, qsizetype place)
{
    return qFromBigEndian<quint32>(bytes.constData() + place);
}

/// The content of the first box at a path such as "moov/udta"; null when there is none or when sizes do not add up to
/// that of the box around them.
inline QByteArray boxContent(QByteArray bytes, const QByteArray& path)
{
    for (const QByteArray& step : path.split('/')) {
        QByteArray found;
        qsizetype place = 0;
        while (place + 8 <= bytes.size()) {
            const auto size = static_cast<qsizetype>(number(bytes, place));
            if (size < 8 || place + size > bytes.size()) {
                return {};
            }
            if (found.isNull() && bytes.mid(place + 4, 4) == step) {
                found = bytes.mid(place + 8, size - 8);
            }
            place += size;
        }
        if (place != bytes.size() || found.isNull()) {
            return {};
        }
        bytes = found;
    }
    return bytes;
}

} // namespace DRBoxReading
