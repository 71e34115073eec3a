#include "platform/contacts/DRVCardPicture.h"

#include "platform/contacts/DRVCardText.h"

#include <cassert>

namespace {

using DRVCardPicture::Format;

struct PictureKind {
    Format format;
    QByteArrayView firstBytes;
    QByteArrayView property;
};

constexpr PictureKind kKinds[] = {
    {Format::Jpeg, QByteArrayView("\xFF\xD8\xFF"), QByteArrayView("PHOTO;ENCODING=b;TYPE=JPEG:")},
    {Format::Png, QByteArrayView("\x89PNG\r\n\x1A\n"), QByteArrayView("PHOTO;ENCODING=b;TYPE=PNG:")},
};

const PictureKind* kindOf(QByteArrayView picture)
{
    for (const PictureKind& kind : kKinds) {
        if (picture.startsWith(kind.firstBytes)) {
            return &kind;
        }
    }
    return nullptr;
}

} // namespace

DRVCardPicture::Format DRVCardPicture::formatOf(QByteArrayView picture)
{
    const PictureKind* kind = kindOf(picture);
    return kind == nullptr ? Format::Unknown : kind->format;
}

QByteArray DRVCardPicture::withPicture(const QByteArray& card, const QByteArray& picture)
{
    assert(card.endsWith(DRVCardText::kEndLine));
    const PictureKind* kind = kindOf(picture);
    if (kind == nullptr) {
        return card;
    }
    const QByteArray lines = DRVCardText::folded(kind->property.toByteArray() + picture.toBase64());
    QByteArray result;
    result.reserve(card.size() + lines.size());
    result.append(QByteArrayView(card).chopped(DRVCardText::kEndLine.size()));
    return result.append(lines).append(DRVCardText::kEndLine);
}
