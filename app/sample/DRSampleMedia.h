#pragma once

#include <QByteArray>
#include <QString>

/// Small files of the kinds that people send to each other, complete and valid, each another by its seed or text.
namespace DRSampleMedia {

/// A picture of 32 by 32 pixels in shades of one colour.
[[nodiscard]] QByteArray gif(quint64 seed);

/// Half a second of a tone: 8000 samples a second of 8 bits.
[[nodiscard]] QByteArray wave(quint64 seed);

/// One to five seconds of silence as telephones code it (RFC 4867, narrow band).
[[nodiscard]] QByteArray amr(quint64 seed);

/// One page that shows `line`, which must hold printable ASCII without brackets and backslashes.
[[nodiscard]] QByteArray pdf(const QByteArray& line);

/// The card of somebody with this name.
[[nodiscard]] QByteArray vCard(const QString& name);

} // namespace DRSampleMedia
