#include "toolkit/UITrap.h"

#include <QCoreApplication>
#include <QThread>

#include "toolkit/Exceptions.h"

namespace tk {

void UITrap() {
  const QCoreApplication* app = QCoreApplication::instance();
  if (app == nullptr) return;
  // The main thread is the one the application object lives in.
  if (QThread::currentThread() == app->thread()) return;
  throw ThreadAccessingUIException();
}

}  // namespace tk
