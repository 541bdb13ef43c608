#include "toolkit/Notice.h"

#include <QApplication>
#include <QMessageBox>
#include <QMetaObject>
#include <QString>

#include <utility>

#include "toolkit/Hook.h"

namespace tk {
namespace {

constinit Hook<NoticeShower> shower;

// The window the notice belongs to: the active one, else the first shown.
QWidget* Owner() {
  if (QWidget* active = QApplication::activeWindow()) return active;
  for (QWidget* w : QApplication::topLevelWidgets()) {
    if (w->isVisible() && w->isWindow()) return w;
  }
  return nullptr;
}

void ShowBox(const QString& text, const QString& informative) {
  auto* box = new QMessageBox(QMessageBox::Information, QStringLiteral("Calloquin"), text, QMessageBox::Ok, Owner());
  box->setInformativeText(informative);
  box->setWindowModality(Qt::NonModal);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setAttribute(Qt::WA_ShowWithoutActivating);  // Return keeps calling numbers
  box->show();
}

}  // namespace

void ShowNotice(const String& text, const String& informative) {
  if (shower) return shower(text, informative);
  auto* app = qobject_cast<QApplication*>(QCoreApplication::instance());
  if (app == nullptr || QGuiApplication::platformName() == QLatin1String("offscreen")) return;
  // Shown from the event loop, not inside whatever asked for it: the notice
  // may be wanted in the middle of a press.
  QMetaObject::invokeMethod(
      app, [t = QString::fromStdString(text), i = QString::fromStdString(informative)] { ShowBox(t, i); },
      Qt::QueuedConnection);
}

NoticeShower SetNoticeShower(NoticeShower replacement) { return shower.Set(std::move(replacement)); }

}  // namespace tk
