#include "toolkit/BigText.h"

#include <QGlyphRun>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QPaintDevice>
#include <QRawFont>
#include <QTextLayout>

#include <cmath>
#include <limits>

namespace tk {
namespace {

struct GlyphKey {
  QString font;  // QFont::key(): family, size, weight and the rest
  quint32 glyph;
  QRgb colour;
  int ratio;  // device pixels per pixel, times 100
  bool operator==(const GlyphKey&) const = default;
};

size_t qHash(const GlyphKey& k, size_t seed = 0) { return qHashMulti(seed, k.font, k.glyph, k.colour, k.ratio); }

struct GlyphImage {
  QImage image;   // the glyph in its colour on transparent pixels
  QPoint offset;  // of the image's top left from the glyph's origin on the baseline
};

// Lives for the run: a game needs the ten digits in a few colours.
QHash<GlyphKey, GlyphImage>& Cache() {
  static QHash<GlyphKey, GlyphImage> cache;
  return cache;
}

const GlyphImage& Glyph(const QRawFont& raw, const QString& fontKey, quint32 glyph, const QColor& colour, qreal ratio) {
  const GlyphKey key{fontKey, glyph, colour.rgba(), static_cast<int>(std::lround(ratio * 100))};
  auto it = Cache().constFind(key);
  if (it != Cache().constEnd()) return *it;
  // Two pixels of room round the outline's box for anti-aliased edges.
  const QRect box = raw.boundingRect(glyph).toAlignedRect().adjusted(-2, -2, 2, 2);
  QImage image(box.size() * ratio, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::transparent);
  QGlyphRun run;
  run.setRawFont(raw);
  run.setGlyphIndexes({glyph});
  run.setPositions({QPointF(0, 0)});
  QPainter p(&image);
  p.setPen(colour);
  p.drawGlyphRun(QPointF(-box.left(), -box.top()), run);
  p.end();
  return *Cache().insert(key, GlyphImage{image, box.topLeft()});
}

}  // namespace

void DrawBigText(QPainter& painter, const QRect& rect, Qt::Alignment alignment, const QFont& font, const QColor& colour,
                 const QString& text) {
  QTextLayout layout(text, font, painter.device());
  layout.beginLayout();
  QTextLine line = layout.createLine();
  if (!line.isValid()) return;
  line.setLineWidth(std::numeric_limits<int>::max() / 256);
  layout.endLayout();
  const qreal width = line.naturalTextWidth();
  qreal x = rect.left();
  if (alignment & Qt::AlignHCenter) x += (rect.width() - width) / 2;
  if (alignment & Qt::AlignRight) x += rect.width() - width;
  const QPointF origin(x, rect.top());
  const QString fontKey = font.key();
  const qreal ratio = painter.device() != nullptr ? painter.device()->devicePixelRatio() : 1.0;
  for (const QGlyphRun& run : line.glyphRuns()) {
    const QList<quint32> glyphs = run.glyphIndexes();
    const QList<QPointF> positions = run.positions();
    for (qsizetype i = 0; i < glyphs.size(); ++i) {
      const GlyphImage& g = Glyph(run.rawFont(), fontKey, glyphs[i], colour, ratio);
      const QPointF at = origin + positions[i];
      painter.drawImage(QPoint(qRound(at.x()) + g.offset.x(), qRound(at.y()) + g.offset.y()), g.image);
    }
  }
}

}  // namespace tk
