#include "wizard/widgets/DRMigrateMemoryWarningPart.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

using namespace DRMigrateMemoryWarningKeys;

struct PartStyle {
    QString key;
    QRgb color;
    QRgb shadow;
    QRgb hilite;
    QStringView tooltipIdentifier;
};

/// In draw order.
const std::array<PartStyle, 4>& partStyles()
{
    static const std::array<PartStyle, 4> kStyles{{
        {kOther, 0xffc68df1, 0xffa25ac9, 0xffe3c6fb, u"memory_bar_other"},
        {kMusic, 0xffabd75e, 0xff81b946, 0xffdbedaa, u"memory_bar_music"},
        {kVideo, 0xffe0709d, 0xffc54377, 0xffeeb5cc, u"memory_bar_videos"},
        {kImage, 0xff86c3f9, 0xff528bd1, 0xffc2e4ff, u"memory_bar_images"},
    }};
    return kStyles;
}

} // namespace

DRMigrateMemoryWarningPart DRMigrateMemoryWarningPart::styledPartWithKey(const QString& key)
{
    DRMigrateMemoryWarningPart part = partWithKey(key);
    const auto style = std::ranges::find(partStyles(), key, &PartStyle::key);
    if (style != partStyles().end()) {
        part.color = QColor::fromRgb(style->color);
        part.shadow = QColor::fromRgb(style->shadow);
        part.hilite = QColor::fromRgb(style->hilite);
        part.tooltip = style->tooltipIdentifier.toString();
    }
    return part;
}

QStringList DRMigrateMemoryWarningPart::drawOrder()
{
    QStringList keys;
    for (const PartStyle& style : partStyles()) {
        keys.append(style.key);
    }
    return keys;
}

void DRMigrateMemoryWarningPart::makeShadowAndHiliteColor()
{
    const float hue = color.hsvHueF();
    const float saturation = color.hsvSaturationF();
    const float brightness = color.valueF();
    shadow = QColor::fromHsvF(hue, saturation, brightness / 4).toRgb();
    hilite = QColor::fromHsvF(hue, saturation, std::min(1.0F, brightness * 2)).toRgb();
}
