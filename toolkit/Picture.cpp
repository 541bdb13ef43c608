#include "toolkit/Picture.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QPixmap>

#include <cmath>
#include <future>

#include "toolkit/Application.h"
#include "toolkit/FolderItem.h"

namespace tk {

struct Picture::Pending {
  std::future<QImage> image;
};

Picture::Picture(double width, double height, double ratio, std::unique_ptr<Pending> pixels)
    : width_(width), height_(height), ratio_(ratio), pixels_(std::move(pixels)) {}

Picture::~Picture() = default;

Integer Picture::Width() const { return static_cast<Integer>(std::lround(width_)); }
Integer Picture::Height() const { return static_cast<Integer>(std::lround(height_)); }

const QPixmap& Picture::Pixmap() const {
  if (!pixmap_) {
    // A QPixmap belongs to the GUI thread, so the decoded image becomes
    // one here, on first use; moving it in spares a copy of its pixels.
    pixmap_ = std::make_unique<QPixmap>(QPixmap::fromImage(pixels_->image.get()));
    pixels_.reset();
    pixmap_->setDevicePixelRatio(ratio_);
  }
  return *pixmap_;
}

namespace {

// The size of a PNG file from its signature and header chunk, or an
// invalid size when the file is no PNG. Read by hand: 24 bytes, where
// Qt's image reader would first look through its format plugins.
QSize PngSize(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  const QByteArray head = file.read(24);
  static const QByteArray kSignature("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR", 16);
  if (head.size() < 24 || !head.startsWith(kSignature)) return {};
  auto be32 = [&](int at) {
    quint32 v = 0;
    for (int i = 0; i < 4; ++i) v = (v << 8) | static_cast<quint8>(head[at + i]);
    return v;
  };
  const quint32 width = be32(16), height = be32(20);
  // A PNG's dimensions are at most 2^31 - 1; zero is no picture at all.
  if (width == 0 || height == 0 || width > 0x7fffffffu || height > 0x7fffffffu) return {};
  return QSize(static_cast<int>(width), static_cast<int>(height));
}

// The pixels of a PNG file, or a null image when they can't be read.
// Told the format and not to guess, the reader goes straight to Qt's own
// PNG decoder; guessing would load every image-format plugin there is
// (and libjpeg) to ask each, holding the dynamic loader's lock while the
// main thread starts.
QImage DecodePng(const QString& path) {
  QImageReader reader(path, "png");
  reader.setAutoDetectImageFormat(false);
  return reader.read();
}

// The header alone says whether the file is a picture and how big; the
// backdrop's pixels take milliseconds to inflate, which a worker thread
// spends while the window's controls are made.
std::shared_ptr<Picture> Open(const QString& path, double ratio) {
  const QSize size = PngSize(path);
  if (!size.isValid()) return nullptr;
  auto pixels = std::make_unique<Picture::Pending>();
  pixels->image = std::async(std::launch::async, [path] { return DecodePng(path); });
  return std::make_shared<Picture>(size.width() / ratio, size.height() / ratio, ratio, std::move(pixels));
}

}  // namespace

std::shared_ptr<Picture> Picture::_OpenFromApp(const String& name) {
  const std::shared_ptr<FolderItem> folder = ResourcesFolder();
  if (!folder) return nullptr;
  const QDir resources(QString::fromStdString(folder->NativePath()));
  const QString base = QString::fromStdString(name);
  const qreal ratio = qGuiApp != nullptr ? qGuiApp->devicePixelRatio() : 1.0;
  if (ratio > 1.0) {
    if (auto sharp = Open(resources.filePath(base + QStringLiteral("@2x.png")), 2.0)) return sharp;
  }
  const QString path = resources.filePath(base + QStringLiteral(".png"));
  return Open(path, 1.0);
}

}  // namespace tk
