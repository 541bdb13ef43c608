#include "toolkit/ModalDialog.h"

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QKeyEvent>
#include <QPointer>
#include <QShortcutEvent>
#include <QWidget>
#include <QWindow>

#include <memory>
#include <utility>
#include <vector>

namespace tk {
namespace {

bool IsInside(const QObject* receiver, const QDialog& dialog) {
  if (receiver == dialog.windowHandle()) return true;
  const auto* widget = qobject_cast<const QWidget*>(receiver);
  return widget != nullptr && (widget == &dialog || dialog.isAncestorOf(widget));
}

QKeyEvent Copy(const QKeyEvent& key) {
  return QKeyEvent(key.type(), key.key(), key.modifiers(), key.nativeScanCode(), key.nativeVirtualKey(),
                   key.nativeModifiers(), key.text(), key.isAutoRepeat(), static_cast<quint16>(key.count()));
}

// While the dialog stands, hands it the keys meant for anything else and
// keeps clicks and shortcuts from the controls behind it. Once it is
// answered, keys that come before the caller has finished are held back
// and delivered afterwards, in order, where they were going.
class Router : public QObject {
 public:
  explicit Router(QDialog& dialog) : dialog_(dialog) {
    connect(&dialog, &QDialog::finished, this, [this] { answered_ = true; });
  }

  void DeliverHeld() {
    for (auto& [receiver, key] : held_) {
      if (receiver) QCoreApplication::postEvent(receiver, key.release());
    }
    held_.clear();
  }

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override {
    switch (event->type()) {
      case QEvent::ShortcutOverride:
        // No shortcut of the window behind fires, not even for a key on its
        // way to the dialog.
        if (IsInside(receiver, dialog_) && !forwarding_) return false;
        event->accept();
        return true;
      case QEvent::Shortcut: {
        // Matched without an override (nothing had the focus): the key.
        if (IsInside(receiver, dialog_)) return false;
        const QKeyCombination key = static_cast<QShortcutEvent*>(event)->key()[0];
        for (QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
          Route(qobject_cast<QWidget*>(receiver->parent()), QKeyEvent(type, key.key(), key.keyboardModifiers()));
        }
        return true;
      }
      case QEvent::KeyPress:
      case QEvent::KeyRelease:
        // A widget gets each key once: the window's own copy passes.
        if (IsInside(receiver, dialog_) || !receiver->isWidgetType()) return false;
        Route(static_cast<QWidget*>(receiver), Copy(*static_cast<QKeyEvent*>(event)));
        return true;
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonRelease:
      case QEvent::MouseButtonDblClick:
      case QEvent::Wheel:
        return !IsInside(receiver, dialog_);
      default:
        return false;
    }
  }

 private:
  void Route(QWidget* receiver, QKeyEvent key) {
    if (answered_) {
      if (receiver != nullptr) held_.emplace_back(receiver, std::unique_ptr<QKeyEvent>(key.clone()));
      return;
    }
    QWidget* target = dialog_.focusWidget() != nullptr ? dialog_.focusWidget() : &dialog_;
    forwarding_ = true;
    QCoreApplication::sendEvent(target, &key);
    forwarding_ = false;
  }

  QDialog& dialog_;
  bool forwarding_ = false;
  bool answered_ = false;
  std::vector<std::pair<QPointer<QWidget>, std::unique_ptr<QKeyEvent>>> held_;
};

}  // namespace

int RunModal(QDialog& dialog) {
  dialog.setWindowModality(Qt::NonModal);  // the router is the modality
  dialog.setAttribute(Qt::WA_ShowWithoutActivating);
  dialog.setWindowFlag(Qt::WindowDoesNotAcceptFocus);
  Router router(dialog);
  qApp->installEventFilter(&router);
  QEventLoop loop;
  QObject::connect(&dialog, &QDialog::finished, &loop, &QEventLoop::quit);
  dialog.show();
  loop.exec();
  qApp->removeEventFilter(&router);
  router.DeliverHeld();  // posted: they arrive once the caller has returned
  return dialog.result();
}

}  // namespace tk
