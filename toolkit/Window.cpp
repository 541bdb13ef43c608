#include "toolkit/Window.h"

#include <QCloseEvent>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenuBar>
#include <QVBoxLayout>
#include <QPaintEvent>
#include <QPainter>
#include <QShortcut>
#include <QWidget>

#include "toolkit/Application.h"
#include "toolkit/Dispatch.h"
#include "toolkit/Picture.h"
#include "toolkit/PushButton.h"
#include "toolkit/QtRange.h"
#include "toolkit/TitleBar.h"

namespace tk {

// The plain window background when no backdrop picture is set: dark, so
// that the light texts of a caller stay readable without their picture.
static const QColor kPlainBackground(0x1e, 0x22, 0x2a);

class Window::TopLevel_ : public QMainWindow {
 public:
  explicit TopLevel_(Window& owner) : owner_(owner) {}

 protected:
  void closeEvent(QCloseEvent* event) override {
    // Without a close box the window cannot be closed by the window
    // manager; the application's own quit still goes through.
    if (!owner_.CloseButton() && event->spontaneous()) {
      event->ignore();
      return;
    }
    QMainWindow::closeEvent(event);
  }

 private:
  Window& owner_;
};

class Window::Surface : public QWidget {
 public:
  explicit Surface(Window& owner) : owner_(owner) { setAttribute(Qt::WA_OpaquePaintEvent); }

 protected:
  void paintEvent(QPaintEvent* event) override {
    QPainter p(this);
    const QColor fill = owner_.HasBackColor() ? QColor(static_cast<QRgb>(0xFF000000u | owner_.BackColor())) : kPlainBackground;
    const QPixmap* pm = owner_.Backdrop() ? &owner_.Backdrop()->Pixmap() : nullptr;
    // The backdrop is drawn at its own size from the top left, as a window
    // background; anything it leaves uncovered gets the fill.
    const QSizeF logical = pm != nullptr ? pm->deviceIndependentSize() : QSizeF();
    const bool uncovered = logical.width() < width() || logical.height() < height();
    // A press dirties a handful of separate labels. Painting each of their
    // rectangles on its own keeps every clip a plain rectangle, for which
    // the raster engine copies the backdrop's rows straight; a clip of many
    // rectangles sends the same pixels through its general span path.
    for (const QRect& r : event->region()) {
      p.setClipRect(r);
      if (uncovered) p.fillRect(r, fill);
      if (pm != nullptr) p.drawPixmap(0, 0, *pm);
    }
  }

 private:
  Window& owner_;
};

Window::Window() : top_((UITrap(), EnsureGui(), std::make_unique<TopLevel_>(*this))) {
  surface_ = new Surface(*this);
  top_->setCentralWidget(surface_);
  if (TitleBar::Wanted()) {
    chrome_ = new QWidget;
    auto* column = new QVBoxLayout(chrome_);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    titleBar_ = new TitleBar(chrome_);
    column->addWidget(titleBar_);
    top_->setMenuWidget(chrome_);
  }
  // The default button answers Return and Enter (keypad too) whatever has
  // the focus. Qt only does this inside dialogs, so the window binds them.
  for (QKeySequence key : {QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter),
                           QKeySequence(Qt::KeypadModifier | Qt::Key_Enter)}) {
    auto* shortcut = new QShortcut(key, top_.get());
    shortcut->setContext(Qt::WindowShortcut);
    QObject::connect(shortcut, &QShortcut::activated, [this] { PressDefaultButton(); });
  }
  ApplyFlags();
  ApplySize();
}

Window::~Window() {
  // Controls look at their widgets when they go, so they go first; the
  // widgets then go with the Qt tree.
  owned_.clear();
  top_.reset();
}

void Window::Constructor() {
  UITrap();
  // A window that Qt shows while it is being built polishes, lays out and
  // repaints each control as it comes; made visible only when its building
  // is over, it does so once for all of them. The window shows then even if
  // a step failed, as it would had it been shown when its layout said so.
  building_ = true;
  struct ShowWhenBuilt {
    Window& window;
    ~ShowWhenBuilt() {
      window.building_ = false;
      window.top_->setVisible(window.visible_);
    }
  } showWhenBuilt{*this};
  Layout();
  CreateControls();
  Dispatch([this] { Open(); });
}

void Window::AddControl(const String& name, Control& control) {
  UITrap();
  control.SetName(name);
  controls_.push_back(&control);
  control.AttachTo(*this);
}

Control* Window::ControlByName(const String& name) const {
  for (Control* c : controls_) {
    if (c->Name() == name) return c;
  }
  return nullptr;
}

Control* Window::ControlByNameIndex(const String& name, Integer index) const {
  for (Control* c : controls_) {
    if (c->Index() == index && c->Name() == name) return c;
  }
  return nullptr;
}

void Window::PressDefaultButton() {
  for (Control* c : controls_) {
    auto* button = dynamic_cast<PushButton*>(c);
    if (button != nullptr && button->Default() && button->Enabled() && button->Visible()) {
      button->Push();
      return;
    }
  }
}

QWidget* Window::Content() const { return surface_; }
QMainWindow* Window::TopLevel() const { return top_.get(); }

void Window::SetWidth(Integer v) { width_ = v; ApplySize(); }
void Window::SetHeight(Integer v) { height_ = v; ApplySize(); }

void Window::ApplySize() {
  const QSize size(QtExtent(width_), QtExtent(height_));
  if (resizeable_) {
    surface_->setMinimumSize(QtExtent(minWidth_), QtExtent(minHeight_));
    surface_->setMaximumSize(QtExtent(maxWidth_), QtExtent(maxHeight_));
    surface_->resize(size);
  } else {
    surface_->setFixedSize(size);
  }
  // The frame follows its content: menu bar (if inside) plus content area.
  top_->adjustSize();
  if (!resizeable_) top_->setFixedSize(top_->sizeHint());
}

void Window::ApplyFlags() {
  Qt::WindowFlags flags = Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
  if (closeButton_) flags |= Qt::WindowCloseButtonHint;
  if (minimizeButton_) flags |= Qt::WindowMinimizeButtonHint;
  if (maximizeButton_) flags |= Qt::WindowMaximizeButtonHint;
  if (fullScreenButton_) flags |= Qt::WindowFullscreenButtonHint;
  if (titleBar_ != nullptr) {
    // Neither Qt nor the compositor draws a frame: the window's own bar
    // offers what it has (no maximise or full screen: it never resizes).
    // Qt drops the frameless hint beside any button hint.
    flags = Qt::Window | Qt::FramelessWindowHint;
    titleBar_->SetControls(minimizeButton_, closeButton_);
  }
  const bool shown = top_->isVisible();
  top_->setWindowFlags(flags);
  if (shown) top_->show();  // Qt hides a window whose flags change
}

void Window::SetTitle(const String& v) {
  title_ = v;
  top_->setWindowTitle(QString::fromStdString(v));
  if (titleBar_ != nullptr) titleBar_->SetTitle(QString::fromStdString(v));
}

void Window::SetVisible(bool v) {
  visible_ = v;
  if (!building_) top_->setVisible(v);
}

void Window::SetFullScreen(bool v) {
  fullScreen_ = v;
  if (v) {
    top_->showFullScreen();
  } else if (top_->isFullScreen()) {
    top_->showNormal();
  }
}

void Window::SetHasBackColor(bool v) { hasBackColor_ = v; surface_->update(); }
void Window::SetBackColor(Color v) { backColor_ = v; surface_->update(); }

void Window::SetMenuBarVisible(bool v) {
  menuBarVisible_ = v;
  if (QWidget* bar = ShownMenuBar()) bar->setVisible(v);
  ApplySize();
}

void Window::ShowMenuBar(QMenuBar* bar) {
  if (chrome_ == nullptr) {
    top_->setMenuBar(bar);  // the old bar, if any, goes with its views
    return;
  }
  delete menuBarShown_;
  menuBarShown_ = bar;
  if (bar != nullptr) chrome_->layout()->addWidget(bar);
}

QWidget* Window::ShownMenuBar() const { return chrome_ != nullptr ? menuBarShown_ : top_->menuWidget(); }

void Window::SetBackdrop(std::shared_ptr<Picture> picture) {
  UITrap();
  backdrop_ = std::move(picture);
  surface_->update();
}

}  // namespace tk
