#include "toolkit/Dispatch.h"

#include <QApplication>
#include <QMessageBox>
#include <QString>

#include <cstdio>
#include <typeinfo>
#include <utility>

#include "toolkit/Hook.h"
#include "toolkit/ModalDialog.h"

namespace tk {
namespace {

void DefaultReporter(const FailureReport& report) {
  std::fprintf(stderr, "%s\n", OneLine(report).c_str());
  std::fflush(stderr);
  // A dialog only where a screen can show it; a headless run has stderr.
  if (qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr &&
      QGuiApplication::platformName() != QLatin1String("offscreen")) {
    const FailureText text = Describe(report);
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Calloquin"), QString::fromStdString(text.headline),
                    QMessageBox::Ok, QApplication::activeWindow());
    box.setInformativeText(QString::fromStdString(text.informative));
    box.setDetailedText(QString::fromStdString(text.details));
    // The details add a button of their own; Return still means OK.
    box.setDefaultButton(QMessageBox::Ok);
    box.setEscapeButton(QMessageBox::Ok);
    RunModal(box);
  }
}

constinit Hook<FailureReporter> reporter;

}  // namespace

void UnhandledException(const FailureReport& report) {
  if (reporter) {
    reporter(report);
  } else {
    DefaultReporter(report);
  }
}

FailureReporter SetFailureReporter(FailureReporter replacement) {
  return reporter.Set(std::move(replacement));
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
    UnhandledException({e.ClassName(), e.Message, e.Stack(), e.Cause});
  } catch (const std::exception& e) {
    UnhandledException({typeid(e).name(), e.what(), {}, {}});
  } catch (...) {
    UnhandledException({"unknown exception", "", {}, {}});
  }
  return false;
}

bool Dispatch(const std::function<void()>& handler) { return RunReportingFailures(handler); }

}  // namespace tk
