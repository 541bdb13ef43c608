// Draws Calloquin's icon into the folder given as the argument: the drawing
// as calloquin.svg, the same drawing as calloquin-<size>.png for each size
// of the desktop's icon theme, and calloquin.icns for macOS.
//
// The icon is a called ball: a yellow ball with a white face and "90" on it,
// on the window's navy ground. It is kept to few, bold shapes so that it
// still reads at 16 pixels. Each shape is one QPainterPath in a 256-unit
// square; the SVG writes those paths out (the digits as outlines, so that
// no font is needed where the SVG is shown) and the PNGs paint them.
#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QString>
#include <QTextStream>

#include <cstdio>
#include <utility>
#include <vector>

namespace {

constexpr double kUnits = 256;

// The lettering's typeface, one the platform has: Debian's DejaVu Sans, or on a
// Mac Helvetica, which every Mac has (DejaVu is not among its fonts).
#if defined(__APPLE__)
constexpr char kFace[] = "Helvetica";
#else
constexpr char kFace[] = "DejaVu Sans";
#endif

struct Shape {
  QPainterPath path;
  QColor colour;
};

QPainterPath Circle(double r) {
  QPainterPath p;
  p.addEllipse(QPointF(128, 128), r, r);
  return p;
}

std::vector<Shape> Drawing() {
  std::vector<Shape> shapes;
  QPainterPath ground;
  ground.addRoundedRect(QRectF(8, 8, 240, 240), 52, 52);
  shapes.push_back({ground, QColor(0x15, 0x24, 0x4a)});
  shapes.push_back({Circle(100), QColor(0xff, 0xd2, 0x1f)});  // the ball
  shapes.push_back({Circle(66), QColor(0xff, 0xff, 0xff)});   // its face

  QFont font(QString::fromLatin1(kFace));
  font.setBold(true);
  font.setPixelSize(72);
  QPainterPath digits;
  digits.addText(0, 0, font, QStringLiteral("90"));
  const QRectF box = digits.boundingRect();
  digits.translate(128 - box.center().x(), 128 - box.center().y());
  digits.setFillRule(Qt::WindingFill);
  shapes.push_back({digits, QColor(0x15, 0x24, 0x4a)});
  return shapes;
}

QString SvgPath(const QPainterPath& path) {
  QString d;
  QTextStream out(&d);
  out.setRealNumberPrecision(5);
  for (int i = 0; i < path.elementCount(); ++i) {
    const QPainterPath::Element e = path.elementAt(i);
    if (e.isMoveTo()) {
      out << 'M' << e.x << ' ' << e.y;
    } else if (e.isLineTo()) {
      out << 'L' << e.x << ' ' << e.y;
    } else if (e.isCurveTo()) {
      const QPainterPath::Element c2 = path.elementAt(i + 1), end = path.elementAt(i + 2);
      out << 'C' << e.x << ' ' << e.y << ' ' << c2.x << ' ' << c2.y << ' ' << end.x << ' ' << end.y;
      i += 2;
    }
  }
  return d;
}

bool WriteSvg(const std::vector<Shape>& shapes, const QString& file) {
  QFile f(file);
  if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate)) return false;
  QTextStream out(&f);
  out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"256\" height=\"256\" viewBox=\"0 0 256 256\">\n";
  for (const Shape& s : shapes) {
    out << "  <path stroke=\"none\" fill=\"" << s.colour.name() << "\" fill-rule=\""
        << (s.path.fillRule() == Qt::WindingFill ? "nonzero" : "evenodd") << "\" d=\"" << SvgPath(s.path) << "\"/>\n";
  }
  out << "</svg>\n";
  return out.status() == QTextStream::Ok;
}

QImage Paint(const std::vector<Shape>& shapes, int size) {
  QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter p(&image);
  p.setRenderHint(QPainter::Antialiasing);
  p.scale(size / kUnits, size / kUnits);
  for (const Shape& s : shapes) p.fillPath(s.path, s.colour);
  return image;
}

QByteArray Png(const QImage& image) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return bytes;
}

void BigEndian32(QByteArray& out, quint32 v) {
  for (int shift = 24; shift >= 0; shift -= 8) out.append(static_cast<char>((v >> shift) & 0xFF));
}

// An .icns file is a list of typed entries; each entry used here holds a
// PNG, which macOS reads for every size from 16 to 1024.
bool WriteIcns(const std::vector<Shape>& shapes, const QString& file) {
  const std::pair<const char*, int> entries[] = {{"icp4", 16},  {"icp5", 32},  {"ic11", 32},  {"ic12", 64},
                                                 {"ic07", 128}, {"ic08", 256}, {"ic13", 256}, {"ic09", 512},
                                                 {"ic14", 512}, {"ic10", 1024}};
  QByteArray body;
  for (const auto& [type, size] : entries) {
    const QByteArray png = Png(Paint(shapes, size));
    body.append(type, 4);
    BigEndian32(body, static_cast<quint32>(png.size() + 8));
    body.append(png);
  }
  QByteArray icns("icns");
  BigEndian32(icns, static_cast<quint32>(body.size() + 8));
  icns.append(body);
  QFile f(file);
  return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(icns) == icns.size();
}

}  // namespace

int main(int argc, char** argv) {
  QGuiApplication app(argc, argv);
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s <output folder>\n", argv[0]);
    return 2;
  }
  const QDir dir(QString::fromLocal8Bit(argv[1]));
  if (!QDir().mkpath(dir.path())) {
    std::fprintf(stderr, "cannot make %s\n", argv[1]);
    return 1;
  }
  const std::vector<Shape> shapes = Drawing();
  bool ok = WriteSvg(shapes, dir.filePath(QStringLiteral("calloquin.svg")));
  for (int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
    ok = Paint(shapes, size).save(dir.filePath(QStringLiteral("calloquin-%1.png").arg(size))) && ok;
  }
  ok = WriteIcns(shapes, dir.filePath(QStringLiteral("calloquin.icns"))) && ok;
  if (!ok) std::fprintf(stderr, "could not write the icon into %s\n", argv[1]);
  return ok ? 0 : 1;
}
