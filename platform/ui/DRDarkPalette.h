#pragma once

#include <QPalette>
#include <QRgb>

/// The calm dark colours of the program's windows, whatever the desktop has. Every one is named here; texts keep a
/// contrast of at least 4.5 to 1 to what they stand on.
class DRDarkPalette {
public:
    static constexpr QRgb kWindow = 0xff22272e; ///< what pages stand on
    static constexpr QRgb kSide = 0xff1b1f25;   ///< what the step groups stand on
    static constexpr QRgb kTable = 0xff171b20;  ///< lists, bars and other sunken places
    static constexpr QRgb kTableAlternate = 0xff1d2127;
    static constexpr QRgb kPanel = 0xff373e48; ///< tooltips and other panels above the page
    static constexpr QRgb kButton = 0xff353c46;
    static constexpr QRgb kLine = 0xff4a535f; ///< thin lines between areas
    static constexpr QRgb kText = 0xffe6eaef;
    static constexpr QRgb kMutedText = 0xffaab4c0;    ///< what matters less, such as steps to come
    static constexpr QRgb kDisabledText = 0xff808b98; ///< readable, but clearly not to be pressed
    static constexpr QRgb kAccent = 0xff2f6fb0;       ///< selections, the main button, the current step
    static constexpr QRgb kOnAccent = 0xffffffff;
    static constexpr QRgb kAlert = 0xfff2b866;  ///< what failed
    static constexpr QRgb kLink = 0xff8cc4ff;   ///< links and the ring around what has the focus
    static constexpr QRgb kVisitedLink = kLink; ///< links open explanations: visited means nothing

    /// The colours in the places where widgets look for them.
    [[nodiscard]] static QPalette palette();

    /// The colours of the button that leads on.
    [[nodiscard]] static QPalette mainButtonPalette();
};
