#pragma once
// One line of text at sizes Qt draws from outlines at every paint (it keeps
// rendered glyphs only up to 64 pixels). Each glyph is rendered once per
// font and colour and then copied: the called number, 230 pixels tall,
// changes at every press.
#include <QColor>
#include <QFont>
#include <QRect>
#include <QString>

class QPainter;

namespace tk {

// Sizes from which glyphs are kept here rather than drawn from outlines.
constexpr int kBigTextPixels = 65;

// Draws text as QPainter::drawText would with the rectangle and Qt::AlignTop
// and the given horizontal alignment, each glyph placed on a whole pixel.
void DrawBigText(QPainter& painter, const QRect& rect, Qt::Alignment alignment, const QFont& font, const QColor& colour,
                 const QString& text);

}  // namespace tk
