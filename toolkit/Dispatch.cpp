#include "toolkit/Dispatch.h"

#include <QApplication>
#include <QMessageBox>
#include <QString>

#include <algorithm>
#include <cstdio>
#include <map>
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

// A failure that comes again from the same place (the same clip at the
// next press: a clip that failed is not looked for again, so nothing new
// is noted) is explained as it was the first time. The place is the top of
// the stack, which is the same for the same call path within a run.
std::optional<FailureCause> CauseOf(const RuntimeException& e) {
  static std::map<std::vector<std::string>, FailureCause> known;
  std::vector<std::string> place{e.ClassName()};
  const auto stack = e.Stack();
  place.insert(place.end(), stack.begin(), stack.begin() + static_cast<std::ptrdiff_t>(std::min<size_t>(stack.size(), 4)));
  if (stack.empty()) return e.Cause;  // no place to know it by
  if (e.Cause) return known[place] = *e.Cause;
  const auto it = known.find(place);
  return it != known.end() ? std::optional<FailureCause>(it->second) : std::nullopt;
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
  const FailureCauseScope scope;
  try {
    body();
    return true;
  } catch (const EndException&) {
    return true;  // the application is ending: not a failure
  } catch (const ThreadEndException&) {
    return true;
  } catch (const RuntimeException& e) {
    UnhandledException({e.ClassName(), e.Message, e.Stack(), CauseOf(e)});
  } catch (const std::exception& e) {
    UnhandledException({typeid(e).name(), e.what(), {}, {}});
  } catch (...) {
    UnhandledException({"unknown exception", "", {}, {}});
  }
  return false;
}

bool Dispatch(const std::function<void()>& handler) { return RunReportingFailures(handler); }

}  // namespace tk
