#pragma once

#include <QRect>

class QPainter;
class QStyleOption;
class QStyleOptionProgressBar;
class QStyleOptionSlider;
class QTextFormat;

/// How the dark style draws its parts: flat, with small round corners, in the palette's colours. Painters come with
/// antialiasing switched on, and keep what these change.
namespace DRDarkDrawing {

void drawButton(const QStyleOption& option, QPainter& painter);
void drawCheckBox(const QStyleOption& option, QPainter& painter);
void drawFocusRing(const QStyleOption& option, QPainter& painter);

/// The frame of a list or text: part of its ground, until it has the focus.
void drawFrame(const QStyleOption& option, QPainter& painter);
void drawHeaderSection(const QStyleOption& option, QPainter& painter);
void drawProgressGroove(const QStyleOption& option, QPainter& painter);

/// The part of the bar that is done, from the side where the language's lines begin.
void drawProgress(const QStyleOptionProgressBar& option, QPainter& painter);

/// The bar's groove, and the handle at `handle`.
void drawScrollBar(const QStyleOptionSlider& option, const QRect& handle, QPainter& painter);

/// Where the handle of a scroll bar without arrows stands, at least `shortest` points long.
[[nodiscard]] QRect scrollHandleRect(const QStyleOptionSlider& option, int shortest);

/// How a link within a text looks while it has the keyboard's focus.
[[nodiscard]] QTextFormat focusedLinkFormat();

} // namespace DRDarkDrawing
