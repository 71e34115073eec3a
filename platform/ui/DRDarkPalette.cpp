#include "platform/ui/DRDarkPalette.h"

#include <QColor>

namespace {

struct RoleColor {
    QPalette::ColorRole role;
    QRgb color;
};

constexpr RoleColor kColors[] = {
    {QPalette::Window, DRDarkPalette::kWindow},
    {QPalette::WindowText, DRDarkPalette::kText},
    {QPalette::Base, DRDarkPalette::kTable},
    {QPalette::AlternateBase, DRDarkPalette::kTableAlternate},
    {QPalette::Text, DRDarkPalette::kText},
    {QPalette::PlaceholderText, DRDarkPalette::kMutedText},
    {QPalette::Button, DRDarkPalette::kButton},
    {QPalette::ButtonText, DRDarkPalette::kText},
    {QPalette::BrightText, DRDarkPalette::kOnAccent},
    {QPalette::ToolTipBase, DRDarkPalette::kPanel},
    {QPalette::ToolTipText, DRDarkPalette::kText},
    {QPalette::Highlight, DRDarkPalette::kAccent},
    {QPalette::HighlightedText, DRDarkPalette::kOnAccent},
    {QPalette::Link, DRDarkPalette::kLink},
    {QPalette::LinkVisited, DRDarkPalette::kVisitedLink},
    // The style draws edges with these.
    {QPalette::Light, DRDarkPalette::kLine},
    {QPalette::Midlight, DRDarkPalette::kButton},
    {QPalette::Mid, DRDarkPalette::kSide},
    {QPalette::Dark, DRDarkPalette::kTable},
    {QPalette::Shadow, DRDarkPalette::kTable},
};

constexpr RoleColor kDisabledColors[] = {
    {QPalette::WindowText, DRDarkPalette::kDisabledText},      {QPalette::Text, DRDarkPalette::kDisabledText},
    {QPalette::ButtonText, DRDarkPalette::kDisabledText},      {QPalette::Highlight, DRDarkPalette::kButton},
    {QPalette::HighlightedText, DRDarkPalette::kDisabledText},
};

} // namespace

QPalette DRDarkPalette::palette()
{
    QPalette palette;
    for (const RoleColor& entry : kColors) {
        palette.setColor(entry.role, QColor(entry.color));
    }
    for (const RoleColor& entry : kDisabledColors) {
        palette.setColor(QPalette::Disabled, entry.role, QColor(entry.color));
    }
    return palette;
}

QPalette DRDarkPalette::mainButtonPalette()
{
    QPalette buttonPalette = palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        buttonPalette.setColor(group, QPalette::Button, QColor(kAccent));
        buttonPalette.setColor(group, QPalette::ButtonText, QColor(kOnAccent));
    }
    return buttonPalette;
}
