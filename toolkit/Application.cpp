#include "toolkit/Application.h"

#include <QApplication>
#include <QCoreApplication>
#include <QFileInfo>
#include <QTimer>
#include <QWindow>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <vector>

#include "toolkit/Exceptions.h"
#include "toolkit/Hook.h"
#include "toolkit/Sound.h"
#include "toolkit/Style.h"

namespace tk {
namespace {
std::unique_ptr<QApplication>& App() {
  static std::unique_ptr<QApplication> app;
  return app;
}
std::vector<std::function<void()>>& Finalizers() {
  static std::vector<std::function<void()>> finalizers;
  return finalizers;
}
constinit Hook<QuitRequester> quitRequester;
int* gArgc = nullptr;
char** gArgv = nullptr;
int gNoArgc = 1;
char gName[] = "calloquin";
char* gNoArgv[] = {gName, nullptr};

// Qt's start-up words while the GUI comes up, kept back: a start that
// finds no display is told in one line of ours, not in Qt's lines ending in
// advice to reinstall and an abort with a core dump.
struct GuiStartWords {
  std::mutex mutex;
  std::vector<std::pair<QtMsgType, QString>> held;
  QtMessageHandler previous = nullptr;  // Qt's own when none was installed
  bool waylandPluginMissing = false;
};
GuiStartWords& StartWords() {
  static GuiStartWords words;
  return words;
}

void HoldStartWords(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
  GuiStartWords& words = StartWords();
  if (type != QtFatalMsg) {
    const std::lock_guard<std::mutex> lock(words.mutex);
    if (message.contains(QLatin1String("Could not find the Qt platform plugin \"wayland\""))) {
      words.waylandPluginMissing = true;
    }
    words.held.emplace_back(type, message);
    return;
  }
  // Qt gives up only when no platform would start: there is no display.
  const bool wayland = qEnvironmentVariableIsSet("WAYLAND_DISPLAY") || qgetenv("XDG_SESSION_TYPE") == "wayland";
  std::fputs(wayland && words.waylandPluginMissing
                 ? "Calloquin: this is a Wayland desktop without Qt's Wayland support; install it (on Debian the "
                   "package qt6-wayland) or start Calloquin where X11 or Xwayland runs.\n"
                 : "Calloquin needs a graphical desktop (X11 or Wayland) and found none; start it from a desktop "
                   "session.\n",
             stderr);
  std::fflush(stderr);
  std::_Exit(1);
}

// Waits for the first window to be shown, and then readies the sound output
// beside the loop: by the first press the device is open, and the first
// frame never waited for it. A window's first expose paints and flushes it
// before the call queued here runs.
class AfterFirstFrame : public QObject {
 public:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Expose && watched->isWindowType() && static_cast<QWindow*>(watched)->isExposed()) {
      QCoreApplication::instance()->removeEventFilter(this);
      QTimer::singleShot(0, [] { WarmUpSound(); });
    }
    return false;
  }
};
}  // namespace

void SetSupportsHiDPI(bool on) {
  // Qt 6 always scales; what is left to choose is whether fractional
  // ratios are kept (sharp) or rounded. Must come before the application.
  QGuiApplication::setHighDpiScaleFactorRoundingPolicy(on ? Qt::HighDpiScaleFactorRoundingPolicy::PassThrough
                                                          : Qt::HighDpiScaleFactorRoundingPolicy::Round);
}

void RuntimeInit(int& argc, char** argv) {
  gArgc = &argc;
  gArgv = argv;
}

void EnsureGui() {
  static bool styled = false;
  if (QCoreApplication::instance() == nullptr) {
#ifndef Q_OS_MACOS
    // The menu bar belongs to the window, whose layout lies below it, on
    // every platform but the Mac, whose menus live at the top of the
    // screen. Asking the desktop for a global menu instead would also cost
    // the start a D-Bus search (without a session bus, a dbus-launch
    // attempt).
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeMenuBar);
#endif
    // Qt's own event loop rather than GLib's, unless the user chose: GLib's
    // writes a wake-up to the kernel at every event posted, and making and
    // showing the window posts over two hundred before the first frame
    // (Qt's writes once until the loop runs). Nothing here runs on GLib.
    // Left set: Qt's threads read the environment while it starts.
    if (!qEnvironmentVariableIsSet("QT_NO_GLIB")) qputenv("QT_NO_GLIB", "1");
    StartWords().previous = qInstallMessageHandler(HoldStartWords);
    App() = gArgc != nullptr ? std::make_unique<QApplication>(*gArgc, gArgv)
                             : std::make_unique<QApplication>(gNoArgc, gNoArgv);
    // Up: Qt's words go their usual way again, those held back first.
    qInstallMessageHandler(StartWords().previous);
    for (const auto& [type, message] : StartWords().held) StartWords().previous(type, QMessageLogContext(), message);
    StartWords().held.clear();
    QApplication::setApplicationName(QStringLiteral("Calloquin"));
    // Matches the desktop entry, so that a desktop shows its icon and name.
    QGuiApplication::setDesktopFileName(QStringLiteral(CALLOQUIN_APP_ID));
    // The one window has no close box; only an explicit quit ends the loop.
    QApplication::setQuitOnLastWindowClosed(false);
  }
  // Also when the application object was made by its host (as in tests).
  if (!styled && qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr) {
    styled = true;
    UseAppStyle();
  }
}

void RunFrameworkInitialization(const std::function<void()>& start) { start(); }

int RuntimeRun() {
  EnsureGui();
  AfterFirstFrame afterFirstFrame;
  QCoreApplication::instance()->installEventFilter(&afterFirstFrame);
  const int status = QCoreApplication::exec();
  QCoreApplication::instance()->removeEventFilter(&afterFirstFrame);
  return status;
}

void AtFinalize(std::function<void()> finalizer) { Finalizers().push_back(std::move(finalizer)); }

void RuntimePerformFinalizers() {
  while (!Finalizers().empty()) {
    auto finalizer = std::move(Finalizers().back());
    Finalizers().pop_back();
    finalizer();
  }
  App().reset();
}

void Quit(Integer status) {
  if (quitRequester) {
    quitRequester(status);
  } else {
    QCoreApplication::exit(static_cast<int>(status));
  }
  throw EndException();
}

QuitRequester SetQuitRequester(QuitRequester requester) { return quitRequester.Set(std::move(requester)); }

String ExecutableFilePath() {
  EnsureGui();
  const QString path = QCoreApplication::applicationFilePath();
  return QFileInfo(path).canonicalFilePath().toStdString();
}

}  // namespace tk
