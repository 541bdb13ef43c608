#pragma once
// One line of text at sizes Qt draws from outlines at every paint (it keeps
// rendered glyphs only up to 64 pixels). The called number, 230 pixels
// tall, changes at every press, and its texts repeat from game to game: so
// each text is laid out once per font, each glyph rendered once per font
// and colour, and a paint only copies images.
#include <QColor>
#include <QFont>
#include <QRect>
#include <QString>

class QPaintDevice;
class QPainter;

namespace tk {

// Sizes from which glyphs are kept here rather than drawn from outlines.
constexpr int kBigTextPixels = 65;

class BigText {
 public:
  // The font to draw in; its kept layouts and glyphs are found when needed.
  void SetFont(const QFont& font);

  // Draws text as QPainter::drawText would with the rectangle and
  // Qt::AlignTop and the given horizontal alignment, each glyph placed on
  // a whole pixel.
  void Draw(QPainter& painter, const QRect& rect, Qt::Alignment alignment, const QColor& colour, const QString& text,
            qreal ratio) const;

  // What Draw covers of the rectangle for this text (glyphs' edges
  // included): the part of a label that changes when the text does.
  QRect Ink(QPaintDevice* device, const QRect& rect, Qt::Alignment alignment, const QString& text) const;

 private:
  struct Face;
  Face& FaceOf() const;

  QFont font_;
  mutable Face* face_ = nullptr;
};

}  // namespace tk
