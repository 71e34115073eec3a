#include "convert/messages/DRSmilDocument.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Kind {
    QLatin1StringView type; ///< part of a MIME type
    QLatin1StringView element;
    bool isVisible;
};
constexpr std::array kKinds{
    Kind{"image/"_L1, "img"_L1, true},
    Kind{"video/"_L1, "video"_L1, true},
    Kind{"audio/"_L1, "audio"_L1, false},
};

const Kind* kindOf(const QString& mimeType)
{
    for (const Kind& kind : kKinds) {
        if (mimeType.contains(kind.type, Qt::CaseInsensitive)) {
            return &kind;
        }
    }
    return nullptr;
}

const QString kHead = u"<smil><head><layout><root-layout width=\"320px\" height=\"480px\"/>"_s;
const QString kImageRegion =
    u"<region id=\"Image\" left=\"0\" top=\"0\" width=\"320px\" height=\"320px\" fit=\"meet\"/>"_s;
const QString kTextRegion =
    u"<region id=\"Text\" left=\"0\" top=\"320\" width=\"320px\" height=\"160px\" fit=\"meet\"/></layout></head><body>"_s;
const QString kSlide = u"<par dur=\"5000ms\">"_s;
const QString kEndOfSlide = u"</par>"_s;
const QString kText = u"<text src=\"text_0.txt\" region=\"Text\"/>"_s;
const QString kEnd = u"</body></smil>"_s;

} // namespace

QString DRSmilDocument::documentOf(const std::vector<Item>& items)
{
    QString body;
    bool hasImageRegion = false;
    for (const Item& item : items) {
        const Kind* kind = kindOf(item.mimeType);
        if (kind == nullptr) {
            continue;
        }
        const bool takesRegion = kind->isVisible && !hasImageRegion;
        hasImageRegion = hasImageRegion || takesRegion;
        body += (body.isEmpty() ? QString() : kEndOfSlide) + kSlide + u'<' + kind->element + u" src=\""_s +
                item.filename + u'"' + (takesRegion ? u" region=\"Image\""_s : QString()) + u"/>"_s;
    }
    if (body.isEmpty()) {
        body = kSlide;
    }
    return kHead + (hasImageRegion ? kImageRegion : QString()) + kTextRegion + body + kText + kEndOfSlide + kEnd;
}
