#pragma once
// A label's one line of text, laid out once per font and text and kept:
// the texts of a game (numbers, counts, calls) repeat from game to game,
// and a press changes several of them. Large text, which Qt would fill
// from outlines at every paint (it keeps rendered glyphs only up to 64
// pixels), comes from glyph images kept per font and colour; smaller text
// is drawn from Qt's own glyph cache.
#include <QColor>
#include <QFont>
#include <QRect>
#include <QString>

class QPaintDevice;
class QPainter;

namespace tk {

// Sizes from which glyph images are kept here.
constexpr int kBigTextPixels = 65;

class KeptText {
 public:
  // The font to draw in; its kept layouts and glyphs are found when needed.
  void SetFont(const QFont& font);

  // Draws text as QPainter::drawText would with the rectangle and
  // Qt::AlignTop and the given horizontal alignment.
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
