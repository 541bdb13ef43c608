#include "toolkit/Picture.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPixmap>

#include "toolkit/Application.h"

namespace tk {

Picture::Picture(const QPixmap& pixmap) : pixmap_(std::make_unique<QPixmap>(pixmap)) {}
Picture::~Picture() = default;

Integer Picture::Width() const { return static_cast<Integer>(pixmap_->deviceIndependentSize().width()); }
Integer Picture::Height() const { return static_cast<Integer>(pixmap_->deviceIndependentSize().height()); }

std::shared_ptr<Picture> Picture::OpenFromApp(const String& name) {
  const QFileInfo exe(QString::fromStdString(ExecutableFilePath()));
  const QDir resources(exe.dir().absoluteFilePath(QStringLiteral("../Resources")));
  const QString base = QString::fromStdString(name);
  const qreal ratio = qGuiApp != nullptr ? qGuiApp->devicePixelRatio() : 1.0;
  if (ratio > 1.0) {
    QPixmap sharp(resources.filePath(base + QStringLiteral("@2x.png")));
    if (!sharp.isNull()) {
      sharp.setDevicePixelRatio(2.0);
      return std::make_shared<Picture>(sharp);
    }
  }
  QPixmap plain(resources.filePath(base + QStringLiteral(".png")));
  if (plain.isNull()) return nullptr;
  return std::make_shared<Picture>(plain);
}

}  // namespace tk
