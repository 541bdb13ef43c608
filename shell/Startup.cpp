// Start-up and shutdown, in their fixed order: early start-up needs no
// window; the window comes when the toolkit is ready, and its opening draws
// the first game before the operator can press anything.
#include "shell/Startup.h"

#include <memory>

#include "shell/App.h"
#include "toolkit/Application.h"
#include "toolkit/Dispatch.h"
#include "window/ImplicitWindow.h"

namespace shell {
namespace {

std::unique_ptr<App> theApp;  // the toolkit's to keep until the process ends

void _InitFileTypes() {}               // no document types
void _ApplicationAddMenuHandlers() {}  // no menu handlers

void _NewAppInstance() { theApp = std::make_unique<App>(); }

void _EarlyStartup() {
  tk::SetSupportsHiDPI(true);
  _InitFileTypes();
  _NewAppInstance();
  _ApplicationAddMenuHandlers();
}

void _MakeDefaultView() { ImplicitWindow1(); }

void _LateStartup() { _MakeDefaultView(); }

// Each step runs only if the ones before it ended without a failure; a
// failure is reported once and start-up goes no further.
int _Main() {
  bool ok = tk::RunReportingFailures([] { _EarlyStartup(); });
  if (ok) ok = tk::RunReportingFailures([] { tk::RunFrameworkInitialization(_LateStartup); });
  if (!ok) return 1;
  return tk::RuntimeRun();
}

}  // namespace

int main(int argc, char** argv) {
  tk::RuntimeInit(argc, argv);
  const int status = _Main();
  tk::RuntimePerformFinalizers();
  theApp.reset();
  return status;
}

}  // namespace shell
