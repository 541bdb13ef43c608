#include "toolkit/Control.h"

#include <QAccessible>
#include <QWidget>
#include <QtGlobal>

#include "toolkit/Hook.h"
#include "toolkit/QtRange.h"

#include <utility>

#include "toolkit/Exceptions.h"
#include "toolkit/Window.h"

namespace tk {

namespace {
constinit Hook<AccessibleObserver> observer;

void Tell(const RectControl& control, QAccessible::Event type, AccessibleChange change) {
  QAccessibleEvent event(control.Widget(), type);
  QAccessible::updateAccessibility(&event);
  if (observer) observer(control, change);
}
}  // namespace

AccessibleObserver SetAccessibleObserver(AccessibleObserver replacement) {
  return observer.Set(std::move(replacement));
}

RectControl::RectControl(QWidget* widget) : widget_(widget) {}

RectControl::~RectControl() {
  // A widget still without a parent is ours to free; one in a window is
  // freed by Qt with the window.
  if (widget_ != nullptr && widget_->parent() == nullptr) delete widget_;
}

void RectControl::AttachTo(Window& window) {
  Control::AttachTo(window);
  if (initialParent_.empty()) widget_->setParent(window.Content());
  ApplyGeometry();
  widget_->setVisible(visible_);
}

void RectControl::SetInitialParent(const String& name) {
  QWidget* parent = nullptr;
  if (!name.empty() && OwnerWindow() != nullptr) {
    if (auto* control = dynamic_cast<RectControl*>(OwnerWindow()->ControlByName(name))) parent = control->Widget();
  }
  // Qt walks a chain of parents that comes back to its start for ever.
  if (parent != nullptr && (parent == widget_ || widget_->isAncestorOf(parent))) {
    throw UnsupportedFormatException("The control \"" + Name() + "\" can't lie in \"" + name + "\", which lies in it.");
  }
  initialParent_ = name;
  if (parent == nullptr && OwnerWindow() != nullptr) parent = OwnerWindow()->Content();
  if (parent != nullptr && widget_->parentWidget() != parent) {
    widget_->setParent(parent);
    widget_->setVisible(visible_);
  }
  ApplyGeometry();
}

void RectControl::ApplyGeometry() {
  // Left and Top are of the window's content area; Qt places a child in its
  // parent's coordinates, so take off the parent control's own position.
  // Clamped before the subtraction, which could otherwise overflow.
  Integer x = QtCoordinate(left_), y = QtCoordinate(top_);
  if (OwnerWindow() != nullptr && !initialParent_.empty()) {
    if (auto* parent = dynamic_cast<RectControl*>(OwnerWindow()->ControlByName(initialParent_))) {
      x -= QtCoordinate(parent->Left());
      y -= QtCoordinate(parent->Top());
    }
  }
  widget_->setGeometry(QtCoordinate(x), QtCoordinate(y), QtExtent(width_), QtExtent(height_));
}

void RectControl::SetVisible(bool v) {
  visible_ = v;
  if (widget_->parentWidget() != nullptr) widget_->setVisible(v);
}

void RectControl::SetEnabled(bool v) {
  enabled_ = v;
  widget_->setEnabled(v);
}

void RectControl::SetHelpTag(const String& v) {
  helpTag_ = v;
  widget_->setToolTip(QString::fromStdString(v));
}

void RectControl::SetTabStop(bool v) {
  tabStop_ = v;
  // Only widgets that take focus at all (buttons) are affected.
  if (widget_->focusPolicy() != Qt::NoFocus) widget_->setFocusPolicy(v ? Qt::StrongFocus : Qt::ClickFocus);
}

void RectControl::SetAccessibleName(const String& v) {
  accessibleName_ = v;
  widget_->setAccessibleName(QString::fromStdString(v));
  Tell(*this, QAccessible::NameChanged, AccessibleChange::Name);
}

void RectControl::SetAccessibleDescription(const String& v) {
  accessibleDescription_ = v;
  widget_->setAccessibleDescription(QString::fromStdString(v));
  Tell(*this, QAccessible::DescriptionChanged, AccessibleChange::Description);
}

void RectControl::Announce([[maybe_unused]] const String& text) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
  QAccessibleAnnouncementEvent event(widget_, QString::fromStdString(text));
  event.setPoliteness(QAccessible::AnnouncementPoliteness::Polite);
  QAccessible::updateAccessibility(&event);
  if (observer) observer(*this, AccessibleChange::Announcement);
#endif
}

}  // namespace tk
