#pragma once
// The life of the process: the runtime, the event loop and the way out.
#include <functional>

#include "toolkit/Types.h"

namespace tk {

class MenuBar;

// Brings the toolkit's runtime up: the first call of the process. The GUI
// itself starts at its first use, so that switches like HiDPI, which Qt
// takes only before that, can still be given in early start-up.
void RuntimeInit(int& argc, char** argv);
// High-resolution drawing, a class-wide switch given before any window.
void SetSupportsHiDPI(bool on);
// Starts the GUI if it is not up yet. Every operation on a window, a
// control or a menu calls it first.
void EnsureGui();
// Calls start once, when the toolkit is ready for windows and before any
// input reaches a control.
void RunFrameworkInitialization(const std::function<void()>& start);
// Runs the event loop; returns the exit status when the application ends.
int RuntimeRun();
// Ends the application with the given status. Nothing after it in the
// handler runs: it raises EndException, which the failure route drops.
[[noreturn]] void Quit(Integer status);
// Tests see the request to end instead of the event loop ending. Returns
// the previous one; an empty one restores the real end.
using QuitRequester = std::function<void(Integer status)>;
QuitRequester SetQuitRequester(QuitRequester requester);
// Registers what must go before the GUI does (the window, above all).
void AtFinalize(std::function<void()> finalizer);
// After the loop: runs the finalizers, newest first, then takes the GUI
// down, while Qt is still whole.
void RuntimePerformFinalizers();
// The application-wide menu bar (on macOS the screen's menu bar).
void SetApplicationMenuBar(MenuBar* bar);
// The absolute path of the running executable, links resolved.
String ExecutableFilePath();

}  // namespace tk
