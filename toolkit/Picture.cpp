#include "toolkit/Picture.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>

#include <png.h>

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
// Decoded by libpng itself: Qt's image reader, even told the format, first
// loads every image-format plugin it finds (gif, ico, jpeg and their
// libraries) to ask whether it reads PNG, and the loader's lock then holds
// up the window's thread too.
QImage DecodePng(const QString& path) {
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  const QByteArray file = QFile::encodeName(path);
  if (png_image_begin_read_from_file(&png, file.constData()) == 0) return {};
  // An opaque picture becomes RGB32, as Qt's own reader would make it, so
  // that it is copied rather than blended onto the window.
  const bool alpha = (png.format & PNG_FORMAT_FLAG_ALPHA) != 0;
  png.format = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? PNG_FORMAT_BGRA : PNG_FORMAT_ARGB;
  QImage image(static_cast<int>(png.width), static_cast<int>(png.height),
               alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
  if (image.isNull() ||
      png_image_finish_read(&png, nullptr, image.bits(), static_cast<png_int_32>(image.bytesPerLine()), nullptr) == 0) {
    png_image_free(&png);
    return {};
  }
  return image;
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
  const std::shared_ptr<FolderItem> executable = ExecutableFile();
  if (!executable) return nullptr;
  const QFileInfo exe(QString::fromStdString(executable->NativePath()));
  const QDir resources(exe.dir().absoluteFilePath(QStringLiteral("../Resources")));
  const QString base = QString::fromStdString(name);
  const qreal ratio = qGuiApp != nullptr ? qGuiApp->devicePixelRatio() : 1.0;
  if (ratio > 1.0) {
    if (auto sharp = Open(resources.filePath(base + QStringLiteral("@2x.png")), 2.0)) return sharp;
  }
  return Open(resources.filePath(base + QStringLiteral(".png")), 1.0);
}

}  // namespace tk
