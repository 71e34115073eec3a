#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// Pictures of contacts. They are large beside the rest of a card, so that a card can also be made without its picture
/// and get it while it is written.
namespace DRVCardPicture {

enum class Format { Unknown, Jpeg, Png };

/// What the picture is, by its first bytes.
[[nodiscard]] Format formatOf(QByteArrayView picture);

/// The card, which must be one of `DRCSContact::vCardRepresentation` without a picture, with the picture as its last
/// property. The card unchanged when the picture is neither JPEG nor PNG.
[[nodiscard]] QByteArray withPicture(const QByteArray& card, const QByteArray& picture);

} // namespace DRVCardPicture
