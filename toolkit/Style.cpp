#include "toolkit/Style.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QProxyStyle>

#include "toolkit/Font.h"

namespace tk {
namespace {

// A standard icon fetched from the style when it is first drawn or
// measured. Qt's own are read from image files, and reading any image
// loads every image-format plugin there is (gif, ico, jpeg and their
// libraries) first.
class DeferredIcon : public QIconEngine {
 public:
  explicit DeferredIcon(QStyle::StandardPixmap which) : which_(which) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    Icon().paint(painter, rect, Qt::AlignCenter, mode, state);
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return Icon().pixmap(size, mode, state);
  }
  QSize actualSize(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return Icon().actualSize(size, mode, state);
  }
  QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override {
    return Icon().availableSizes(mode, state);
  }
  bool isNull() override { return false; }
  QIconEngine* clone() const override { return new DeferredIcon(*this); }

 private:
  const QIcon& Icon() {
    if (icon_.isNull()) {
      // From the style underneath: asking the application's own would
      // only defer again.
      const QStyle* style = QApplication::style();
      if (const auto* proxy = qobject_cast<const QProxyStyle*>(style)) style = proxy->baseStyle();
      icon_ = style->standardIcon(which_);
    }
    return icon_;
  }
  QStyle::StandardPixmap which_;
  QIcon icon_;
};

// Every menu bar makes a button for the menus that don't fit, hidden until
// they don't, and asks for its icon at once. Calloquin's menus always fit.
class AppStyle : public QProxyStyle {
 public:
  using QProxyStyle::QProxyStyle;
  QIcon standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const override {
    if (which == SP_ToolBarHorizontalExtensionButton || which == SP_ToolBarVerticalExtensionButton) {
      return QIcon(new DeferredIcon(which));
    }
    return QProxyStyle::standardIcon(which, option, widget);
  }
};

}  // namespace

void UseAppStyle() {
  // The platform's style (or the one named by -style), wrapped.
  QApplication::setStyle(new AppStyle(QApplication::style()->name()));
  // Menus and dialogs in the ordinary text of labels and buttons: Qt sets
  // up each size of a font through fontconfig, a third of a millisecond
  // of the start each, and the window needs no size of its own for them.
  QApplication::setFont(MakeFont("System", 0, false, false, false));
}

}  // namespace tk
