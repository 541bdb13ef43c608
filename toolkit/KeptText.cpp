#include "toolkit/KeptText.h"

#include "toolkit/Control.h"

#include <QGlyphRun>
#include <QHash>
#include <QImage>
#include <QPaintDevice>
#include <QPainter>
#include <QRawFont>
#include <QTextLayout>

#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

namespace tk {
namespace {

// The digits 0 to 9 of a font. A text of digits alone (the board's ninety
// numbers, every number called, the count) is put together from them
// rather than laid out: digits all have one width and nothing kerns them,
// so the result is the layout's, glyph for glyph.
struct Digits {
  QGlyphRun run;
  std::array<quint32, 10> glyph{};
  std::array<qreal, 10> advance{};
  qreal baseline = 0;  // from the line's top, as a layout puts it
};

// The digits of a font, from the font file of its style at the size it
// asks for. The font's own engine is never made: each size of a font would
// have fontconfig match it afresh (the largest part of the first frame's
// text), where a size derived from the style's one engine costs nothing.
// The ordinary size of the style is made once, for the texts that need
// shaping; the others are that engine at another size.
std::optional<Digits> DigitsOf(const QFont& font) {
  static QHash<QFont, QRawFont> styles;
  QFont style = font;
  style.setPixelSize(kOrdinaryTextPixels);
  style.setUnderline(false);
  QRawFont& base = styles[style];
  if (!base.isValid()) base = QRawFont::fromFont(style);
  QRawFont raw = base;
  raw.setPixelSize(font.pixelSize());
  const QList<quint32> glyphs = raw.glyphIndexesForString(QStringLiteral("0123456789"));
  if (!raw.isValid() || glyphs.size() != 10 || glyphs.contains(0u)) return std::nullopt;  // a fallback font has them
  const QList<QPointF> advances = raw.advancesForGlyphIndexes(glyphs);
  Digits d;
  d.run.setRawFont(raw);
  d.run.setUnderline(font.underline());
  d.baseline = raw.ascent();
  for (size_t k = 0; k < 10; ++k) {
    d.glyph[k] = glyphs[static_cast<qsizetype>(k)];
    d.advance[k] = advances[static_cast<qsizetype>(k)].x();
  }
  return d;
}

struct PlacedGlyph {
  int font;         // index into the face's raw fonts (a fallback font has glyph numbers of its own)
  quint32 glyph;
  QPointF position;  // of its origin on the baseline, from the line's top left
  QRect box;         // its outline's box with room for anti-aliased edges, from the origin
};

struct Line {
  qreal width = 0;
  QList<QGlyphRun> runs;            // for text Qt's glyph cache draws
  std::vector<PlacedGlyph> glyphs;  // for text drawn from kept images
};

struct ImageKey {
  int font;
  quint32 glyph;
  QRgb colour;
  int ratio;  // device pixels per pixel, times 100
  bool operator==(const ImageKey&) const = default;
};

size_t qHash(const ImageKey& k, size_t seed = 0) { return qHashMulti(seed, k.font, k.glyph, k.colour, k.ratio); }

// Where a glyph's image goes: its origin on a whole pixel, as drawText
// would place it.
QPoint TopLeft(const QPointF& origin, const PlacedGlyph& g) {
  const QPointF at = origin + g.position;
  return QPoint(qRound(at.x()) + g.box.left(), qRound(at.y()) + g.box.top());
}

QPointF Origin(const QRect& rect, Qt::Alignment alignment, qreal width) {
  qreal x = rect.left();
  if (alignment & Qt::AlignHCenter) x += (rect.width() - width) / 2;
  if (alignment & Qt::AlignRight) x += rect.width() - width;
  return {x, static_cast<qreal>(rect.top())};
}

}  // namespace

// Everything kept for one font. Lives for the run: a game needs the
// numbers 1 to 90, their calls, and their digits in a few colours.
struct KeptText::Face {
  static constexpr qsizetype kMaxLines = 1000;
  QFont font;
  std::vector<QRawFont> raws;
  QHash<QString, Line> lines;
  QHash<ImageKey, QImage> images;

  std::optional<Digits> digits;
  bool digitsTried = false;

  // Laid out for the device it is drawn on, as drawText would.
  const Line& LineOf(const QString& text, QPaintDevice* device) {
    auto it = lines.constFind(text);
    if (it != lines.constEnd()) return *it;
    // A game's texts are a few hundred; a label whose text never repeats
    // must not make the table grow without end.
    if (lines.size() >= kMaxLines) lines.clear();
    Line line;
    if (!Compose(text, line)) LayOut(text, device, line);
    if (font.pixelSize() >= kBigTextPixels) {
      for (const QGlyphRun& run : line.runs) {
        const int font = RawIndex(run.rawFont());
        const QList<quint32> glyphs = run.glyphIndexes();
        const QList<QPointF> positions = run.positions();
        for (qsizetype i = 0; i < glyphs.size(); ++i) {
          const QRect box = run.rawFont().boundingRect(glyphs[i]).toAlignedRect().adjusted(-2, -2, 2, 2);
          line.glyphs.push_back({font, glyphs[i], positions[i], box});
        }
      }
    }
    return *lines.insert(text, std::move(line));
  }

  void LayOut(const QString& text, QPaintDevice* device, Line& line) const {
    QTextLayout layout(text, font, device);
    layout.beginLayout();
    QTextLine textLine = layout.createLine();
    if (textLine.isValid()) textLine.setLineWidth(std::numeric_limits<int>::max() / 256);
    layout.endLayout();
    if (textLine.isValid()) {
      line.width = textLine.naturalTextWidth();
      line.runs = textLine.glyphRuns();
    }
  }

  bool Compose(const QString& text, Line& line) {
    if (text.isEmpty()) return false;
    for (const QChar c : text) {
      if (c < u'0' || c > u'9') return false;
    }
    if (!digitsTried) {
      digitsTried = true;
      digits = DigitsOf(font);
    }
    if (!digits) return false;
    QList<quint32> glyphs;
    QList<QPointF> positions;
    qreal x = 0;
    for (const QChar c : text) {
      const auto k = static_cast<size_t>(c.unicode() - u'0');
      glyphs.push_back(digits->glyph[k]);
      positions.push_back(QPointF(x, digits->baseline));
      x += digits->advance[k];
    }
    QGlyphRun run = digits->run;
    run.setGlyphIndexes(glyphs);
    run.setPositions(positions);
    run.setBoundingRect(QRectF());  // the digits' own, found when asked for
    line.width = x;
    line.runs = {run};
    return true;
  }

  int RawIndex(const QRawFont& raw) {
    for (size_t i = 0; i < raws.size(); ++i) {
      if (raws[i] == raw) return static_cast<int>(i);
    }
    raws.push_back(raw);
    return static_cast<int>(raws.size() - 1);
  }

  const QImage& ImageOf(const PlacedGlyph& g, const QColor& colour, qreal ratio) {
    const ImageKey key{g.font, g.glyph, colour.rgba(), static_cast<int>(std::lround(ratio * 100))};
    auto it = images.constFind(key);
    if (it != images.constEnd()) return *it;
    QImage image(g.box.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QGlyphRun run;
    run.setRawFont(raws[static_cast<size_t>(g.font)]);
    run.setGlyphIndexes({g.glyph});
    run.setPositions({QPointF(0, 0)});
    QPainter p(&image);
    p.setPen(colour);
    p.drawGlyphRun(QPointF(-g.box.left(), -g.box.top()), run);
    p.end();
    return *images.insert(key, image);
  }
};

void KeptText::SetFont(const QFont& font) {
  font_ = font;
  face_ = nullptr;
}

// Found when first drawn: a label's font changes several times while its
// properties are set, and only the last one is ever drawn.
KeptText::Face& KeptText::FaceOf() const {
  if (face_ == nullptr) {
    // Fonts compare and hash by what they ask for, much cheaper than
    // building their key strings.
    static QHash<QFont, std::shared_ptr<Face>> faces;
    std::shared_ptr<Face>& face = faces[font_];
    if (!face) {
      face = std::make_shared<Face>();
      face->font = font_;
    }
    face_ = face.get();
  }
  return *face_;
}

void KeptText::Draw(QPainter& painter, const QRect& rect, Qt::Alignment alignment, const QColor& colour,
                   const QString& text, qreal ratio) const {
  Face& face = FaceOf();
  const Line& line = face.LineOf(text, painter.device());
  const QPointF origin = Origin(rect, alignment, line.width);
  if (font_.pixelSize() < kBigTextPixels) {
    painter.setPen(colour);
    for (const QGlyphRun& run : line.runs) painter.drawGlyphRun(origin, run);
    return;
  }
  for (const PlacedGlyph& g : line.glyphs) painter.drawImage(TopLeft(origin, g), face.ImageOf(g, colour, ratio));
}

QRect KeptText::Ink(QPaintDevice* device, const QRect& rect, Qt::Alignment alignment, const QString& text) const {
  const Line& line = FaceOf().LineOf(text, device);
  const QPointF origin = Origin(rect, alignment, line.width);
  QRect ink;
  for (const PlacedGlyph& g : line.glyphs) ink |= QRect(TopLeft(origin, g), g.box.size());
  // A pixel more each way: at a fractional pixel ratio an image's edge
  // falls between two pixels.
  return ink.isNull() ? ink : ink.adjusted(-1, -1, 1, 1);
}

}  // namespace tk
