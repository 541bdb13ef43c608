// Start-up and shutdown, in their fixed order: early start-up needs no
// window; the window comes when the toolkit is ready, and its opening draws
// the first game before the operator can press anything.
#include "shell/Startup.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>

#include <unistd.h>

#include "shell/App.h"
#include "shell/MainMenuBar.h"
#include "toolkit/Application.h"
#include "toolkit/Dispatch.h"
#include "window/ImplicitWindow.h"

namespace shell {
namespace {

std::unique_ptr<App> theApp;  // the toolkit's to keep until the process ends
// What the process returns. It stays a failure unless the event loop ran
// and ended: a start-up cut short by a failure is no clean run.
int exitStatus = 1;

// Once the run is over and its status known, the shutdown that follows
// must not keep the program alive: Qt 6.4's Wayland client can wait for
// good while it closes the display (its reader thread and the closing
// thread wait on each other). Past this bound the process ends with its
// status as it stands, and the kernel closes whatever was left open. The
// bound's thread makes only calls that are safe wherever the main thread
// is stuck: no stdio, whose locks the stuck thread may hold.
constexpr auto kShutdownBound = std::chrono::seconds(2);

void EndWithin(std::chrono::seconds bound, int status) {
  std::thread([bound, status] {
    std::this_thread::sleep_for(bound);
    static constexpr char kLine[] = "Calloquin: the shutdown did not finish in time; ending now.\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kLine, sizeof kLine - 1);
    _exit(status);
  }).detach();
}

void _InitFileTypes() {}               // no document types
void _ApplicationAddMenuHandlers() {}  // no menu handlers

// The menu bar exists before the application object is registered and
// before any window.
void _NewAppInstance() {
  auto app = std::make_unique<App>();
  tk::SetApplicationMenuBar(&ImplicitMainMenuBar());
  theApp = std::move(app);  // registered: kept to the end of the process
}

void _EarlyStartup() {
  tk::SetSupportsHiDPI(true);  // first: Qt takes it only before the GUI starts
  _InitFileTypes();
  _NewAppInstance();
  _ApplicationAddMenuHandlers();
}

void _MakeDefaultView() { ImplicitWindow1(); }

void _LateStartup() { _MakeDefaultView(); }

// The failure route stands before anything else runs: a failure in any
// step is reported once and skips every step after it, the event loop too,
// so no window comes after a failed early start-up.
void _Main() {
  tk::RunReportingFailures([] {
    _EarlyStartup();
    tk::RunFrameworkInitialization(_LateStartup);
    exitStatus = tk::RuntimeRun();
  });
}

}  // namespace

int main(int argc, char** argv) {
  tk::RuntimeInit(argc, argv);
  // The initialisers have run already: the language gives the globals
  // (Module1's arrays, the menu bar's empty slot) their first values before
  // main.
  _Main();
  std::fflush(nullptr);  // what the run wrote is out, whatever the shutdown does
  EndWithin(kShutdownBound, exitStatus);
  tk::RuntimePerformFinalizers();
  theApp.reset();
  return exitStatus;
}

}  // namespace shell
