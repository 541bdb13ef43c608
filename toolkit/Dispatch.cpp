#include "toolkit/Dispatch.h"

#include <QApplication>
#include <QMessageBox>
#include <QString>

#include <cstdio>
#include <typeinfo>
#include <utility>

#include "toolkit/ModalDialog.h"

namespace tk {
namespace {

void DefaultReporter(const FailureReport& report) {
  std::fprintf(stderr, "Calloquin: unhandled %s: %s\n", report.className.c_str(), report.message.c_str());
  std::fflush(stderr);
  // A dialog only where a screen can show it; a headless run has stderr.
  if (qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr &&
      QGuiApplication::platformName() != QLatin1String("offscreen")) {
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Calloquin"),
                    QStringLiteral("Something went wrong: %1").arg(QString::fromStdString(report.className)),
                    QMessageBox::Ok, QApplication::activeWindow());
    box.setInformativeText(QString::fromStdString(report.message));
    RunModal(box);
  }
}

FailureReporter& Reporter() {
  static FailureReporter reporter;
  return reporter;
}

}  // namespace

void UnhandledException(const FailureReport& report) {
  if (Reporter()) {
    Reporter()(report);
  } else {
    DefaultReporter(report);
  }
}

FailureReporter SetFailureReporter(FailureReporter reporter) {
  return std::exchange(Reporter(), std::move(reporter));
}

bool RunReportingFailures(const std::function<void()>& body) {
  try {
    body();
    return true;
  } catch (const EndException&) {
    return true;  // the application is ending: not a failure
  } catch (const ThreadEndException&) {
    return true;
  } catch (const RuntimeException& e) {
    UnhandledException({e.ClassName(), e.Message, e.Stack()});
  } catch (const std::exception& e) {
    UnhandledException({typeid(e).name(), e.what(), {}});
  } catch (...) {
    UnhandledException({"unknown exception", "", {}});
  }
  return false;
}

bool Dispatch(const std::function<void()>& handler) { return RunReportingFailures(handler); }

}  // namespace tk
