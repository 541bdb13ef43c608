// Paints the window's backdrop, BingoOuter1.png (1036 x 572) and
// BingoOuter1@2x.png (2072 x 1144), into the folder given as the argument.
//
// The window's labels are transparent and light (grey and yellow cells,
// white, orange and green figures), so the picture is a dark ground with
// quiet panels that group the board and the display without competing
// with them. Everything is drawn in window coordinates and scaled, so the
// two sizes show the same picture.
#include <QColor>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <QRectF>
#include <QString>

#include <array>
#include <cstdio>
#include <vector>

#include <png.h>

namespace {

constexpr int kWidth = 1036;
constexpr int kHeight = 572;

// The lettering's typeface, one the platform has: Debian's DejaVu Sans, or on a
// Mac Helvetica, which every Mac has (DejaVu is not among its fonts).
#if defined(__APPLE__)
constexpr char kFace[] = "Helvetica";
#else
constexpr char kFace[] = "DejaVu Sans";
#endif

// The board's cells are hand-placed, not a regular grid: these are the
// left edges of the ten columns and the main top of each of the nine rows.
constexpr std::array<int, 10> kColumnLeft = {35, 99, 162, 227, 288, 349, 413, 478, 541, 602};
constexpr std::array<int, 9> kRowTop = {31, 79, 127, 175, 222, 270, 319, 368, 417};
constexpr int kCellWidth = 42;
constexpr int kCellHeight = 36;

const QRectF kBoardPanel(18, 14, 638, 454);     // around (35,31)-(644,454)
const QRectF kDisplayPanel(664, 14, 358, 454);  // the current number and its companions

QColor White(int alpha) { return QColor(255, 255, 255, alpha); }

void Panel(QPainter& p, const QRectF& r) {
  QLinearGradient fill(r.topLeft(), r.bottomLeft());
  fill.setColorAt(0, White(14));
  fill.setColorAt(1, White(6));
  QPainterPath path;
  path.addRoundedRect(r, 16, 16);
  p.fillPath(path, fill);
  p.setPen(QPen(White(26), 1));
  p.drawPath(path);
}

void Paint(QPainter& p) {
  p.setRenderHint(QPainter::Antialiasing);

  // Ground: deep navy, a little lighter at the top, so yellow, orange and
  // green all keep their contrast (a green ground would swallow the count).
  QLinearGradient ground(0, 0, 0, kHeight);
  ground.setColorAt(0, QColor(0x15, 0x24, 0x4a));
  ground.setColorAt(1, QColor(0x08, 0x0f, 0x24));
  p.fillRect(QRectF(0, 0, kWidth, kHeight), ground);

  // Darker corners draw the eye inward.
  QRadialGradient vignette(QPointF(kWidth / 2.0, kHeight / 2.0), kWidth * 0.62);
  vignette.setColorAt(0.55, QColor(0, 0, 0, 0));
  vignette.setColorAt(1, QColor(0, 0, 0, 90));
  p.fillRect(QRectF(0, 0, kWidth, kHeight), vignette);

  Panel(p, kBoardPanel);
  Panel(p, kDisplayPanel);

  // The board: faint lines between the rows and between the columns, each
  // halfway between neighbouring cells, so every number sits in a box
  // without a line crossing it.
  p.setPen(QPen(White(20), 1));
  for (std::size_t r = 0; r + 1 < kRowTop.size(); ++r) {
    const double y = (kRowTop[r] + kCellHeight + kRowTop[r + 1]) / 2.0;
    p.drawLine(QPointF(kBoardPanel.left() + 12, y), QPointF(kBoardPanel.right() - 12, y));
  }
  for (std::size_t c = 0; c + 1 < kColumnLeft.size(); ++c) {
    const double x = (kColumnLeft[c] + kCellWidth + kColumnLeft[c + 1]) / 2.0;
    p.drawLine(QPointF(x, kBoardPanel.top() + 12), QPointF(x, kBoardPanel.bottom() - 12));
  }

  // The display: a soft light behind the current number, a faint band
  // under the call, and a thin rule between the previous numbers and the
  // count. Nothing crosses a figure: the count's top comes close under the
  // call, so no rule runs across the panel there.
  QRadialGradient glow(QPointF(843, 160), 175);
  glow.setColorAt(0, QColor(0x3a, 0x5f, 0xb0, 70));
  glow.setColorAt(1, QColor(0x3a, 0x5f, 0xb0, 0));
  QPainterPath display;
  display.addRoundedRect(kDisplayPanel, 16, 16);
  p.fillPath(display, glow);
  QPainterPath band;
  band.addRoundedRect(QRectF(688, 302, 305, 21), 10.5, 10.5);
  p.fillPath(band, QColor(0, 0, 0, 60));
  p.setPen(QPen(White(30), 1));
  p.drawLine(QPointF(856, 352), QPointF(856, 452));

  // A discreet wordmark in the free space between the two bottom buttons.
  QFont font(QString::fromLatin1(kFace));
  font.setPixelSize(18);
  font.setLetterSpacing(QFont::AbsoluteSpacing, 6);
  p.setFont(font);
  p.setPen(White(46));
  p.drawText(QRectF(240, 496, 410, 40), Qt::AlignCenter, QStringLiteral("CALLOQUIN"));
}

// An opaque RGB PNG whose rows are not filtered. The picture is decoded
// at every start, and undoing the filters that libpng would choose for its
// smooth gradients takes over half of the decoding; unfiltered, the file is
// a fifth larger.
bool Save(const QImage& image, const QString& path) {
  FILE* file = std::fopen(QFile::encodeName(path).constData(), "wb");
  if (file == nullptr) return false;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
  std::vector<png_bytep> rows(static_cast<size_t>(image.height()));
  for (int y = 0; y < image.height(); ++y) rows[static_cast<size_t>(y)] = const_cast<uchar*>(image.constScanLine(y));
  volatile bool ok = false;  // read after a longjmp
  if (info != nullptr && setjmp(png_jmpbuf(png)) == 0) {
    png_init_io(png, file);
    png_set_IHDR(png, info, static_cast<png_uint_32>(image.width()), static_cast<png_uint_32>(image.height()), 8,
                 PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
    png_set_compression_level(png, 9);
    png_write_info(png, info);
    // Qt's RGB32 pixels hold an unused byte beside R, G and B, in the
    // order of the machine's words.
    if (Q_BYTE_ORDER == Q_LITTLE_ENDIAN) {
      png_set_bgr(png);
      png_set_filler(png, 0, PNG_FILLER_AFTER);
    } else {
      png_set_filler(png, 0, PNG_FILLER_BEFORE);
    }
    png_write_image(png, rows.data());
    png_write_end(png, nullptr);
    ok = true;
  }
  png_destroy_write_struct(&png, &info);
  return std::fclose(file) == 0 && ok;
}

bool Write(const QString& path, int scale) {
  QImage image(kWidth * scale, kHeight * scale, QImage::Format_RGB32);
  image.fill(Qt::black);
  {
    QPainter p(&image);
    p.scale(scale, scale);
    Paint(p);
  }
  if (!Save(image, path)) {
    std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
    return false;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  // Fonts need a GUI application; the offscreen platform needs no display.
  QGuiApplication app(argc, argv);
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s <resources folder>\n", argv[0]);
    return 2;
  }
  const QDir dir(QString::fromLocal8Bit(argv[1]));
  if (!dir.mkpath(QStringLiteral("."))) {
    std::fprintf(stderr, "cannot make %s\n", argv[1]);
    return 1;
  }
  const bool ok = Write(dir.filePath(QStringLiteral("BingoOuter1.png")), 1) &&
                  Write(dir.filePath(QStringLiteral("BingoOuter1@2x.png")), 2);
  return ok ? 0 : 1;
}
