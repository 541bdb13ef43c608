// Measures a window from outside, through the X server, as an operator would
// see it: keys go in through XTest, and XDamage says when the server was
// drawn to; the pixels are then read back to tell a real change from noise.
//
//   xprobe press [--games G] [--settle-ms S] TARGET...
//     TARGET is display=:N,name=TITLE[,caller=1][,flash=1][,dialog=1][,pid=P][,ink=RRGGBB]
//     Plays G games of 90 Return presses on each target in turn (a game on
//     one, then a game on the next), timing each press from the key event
//     to the first damage after which the big number's pixels differ.
//   xprobe startup --display :N --name TITLE --region X,Y,W,H --colour RRGGBB
//                  --min PIXELS [--hold-ms H] -- PROGRAM [ARGS...]
//     Starts the program and times from exec to the first frame in which at
//     least PIXELS of the region (content coordinates) have the colour.
//   xprobe sound --sink NAME [--presses N] [--wait-ms W] [--quiet-ms Q] [--busy-sink] TARGET
//     With the caller switched on, presses Return N times (at most 89, one
//     game), each once the sink has been quiet for Q ms (400), and times each
//     press from the key event to the clip's first sample at the PipeWire
//     sink NAME. W is the wait between the window's appearing and the
//     first press. The sink rests while nothing plays to it, as a desktop's
//     does; --busy-sink keeps it running, as another program playing would.
//
// Every window is taken to have the content size of Calloquin's layout with
// anything above it (the in-window menu bar) found from its geometry.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/Xdamage.h>
#include <X11/keysym.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "bench/speed/Quantile.h"
#include "bench/speed/SinkListener.h"
#include "window/LayoutData.h"

namespace {

using Clock = std::chrono::steady_clock;

double Ms(Clock::duration d) { return std::chrono::duration<double, std::milli>(d).count(); }

[[noreturn]] void Die(const std::string& what) {
  std::fprintf(stderr, "xprobe: %s\n", what.c_str());
  std::exit(2);
}

struct Rect {
  int x, y, w, h;
};

// Content size of the window under test: the same for Calloquin and for
// the bare reference window.
int ContentWidth() { return static_cast<int>(layout::Window().width); }
int ContentHeight() { return static_cast<int>(layout::Window().height); }

Rect MainNumberRect() {
  for (const auto& l : layout::Labels()) {
    if (std::string(l.name) == "MainNumber") {
      return {static_cast<int>(l.left), static_cast<int>(l.top), static_cast<int>(l.width), static_cast<int>(l.height)};
    }
  }
  Die("no MainNumber in the layout");
}

Rect ButtonRect(const char* name) {
  for (const auto& b : layout::Buttons()) {
    if (std::string(b.name) == name) {
      return {static_cast<int>(b.left), static_cast<int>(b.top), static_cast<int>(b.width), static_cast<int>(b.height)};
    }
  }
  Die(std::string("no button ") + name + " in the layout");
}

// A rectangle of the content area, clipped to it.
Rect ClipToContent(Rect r) {
  const int x0 = std::max(r.x, 0), y0 = std::max(r.y, 0);
  const int x1 = std::min(r.x + r.w, ContentWidth()), y1 = std::min(r.y + r.h, ContentHeight());
  return {x0, y0, x1 - x0, y1 - y0};
}

std::string WindowName(Display* dpy, Window w) {
  char* name = nullptr;
  std::string out;
  if (XFetchName(dpy, w, &name) && name != nullptr) out = name;
  if (name != nullptr) XFree(name);
  return out;
}

bool Viewable(Display* dpy, Window w) {
  XWindowAttributes a;
  return XGetWindowAttributes(dpy, w, &a) && a.map_state == IsViewable;
}

// The top-level window of that title, viewable; there is no window manager,
// so top-levels are the root's own children.
Window FindWindow(Display* dpy, const std::string& title) {
  Window root_return, parent, *children = nullptr;
  unsigned n = 0;
  Window found = 0;
  if (XQueryTree(dpy, DefaultRootWindow(dpy), &root_return, &parent, &children, &n)) {
    for (unsigned i = n; i-- > 0 && found == 0;) {
      if (WindowName(dpy, children[i]) == title && Viewable(dpy, children[i])) found = children[i];
    }
  }
  if (children != nullptr) XFree(children);
  return found;
}

// Any other viewable top-level window with a title: a dialog.
Window OtherWindow(Display* dpy, Window main) {
  Window root_return, parent, *children = nullptr;
  unsigned n = 0;
  Window found = 0;
  if (XQueryTree(dpy, DefaultRootWindow(dpy), &root_return, &parent, &children, &n)) {
    for (unsigned i = n; i-- > 0 && found == 0;) {
      if (children[i] != main && !WindowName(dpy, children[i]).empty() && Viewable(dpy, children[i])) found = children[i];
    }
  }
  if (children != nullptr) XFree(children);
  return found;
}

// Height of whatever lies above the content area (the in-window menu bar).
int ContentTop(Display* dpy, Window w) {
  XWindowAttributes a;
  if (!XGetWindowAttributes(dpy, w, &a)) Die("window vanished");
  return a.height - ContentHeight();
}

std::vector<char> Grab(Display* dpy, Window w, Rect r) {
  XImage* img = XGetImage(dpy, w, r.x, r.y, static_cast<unsigned>(r.w), static_cast<unsigned>(r.h), AllPlanes, ZPixmap);
  if (img == nullptr) return {};
  std::vector<char> bytes(img->data, img->data + static_cast<std::ptrdiff_t>(img->bytes_per_line) * img->height);
  XDestroyImage(img);
  return bytes;
}

long CountColour(Display* dpy, Window w, Rect r, unsigned long rgb) {
  XImage* img = XGetImage(dpy, w, r.x, r.y, static_cast<unsigned>(r.w), static_cast<unsigned>(r.h), AllPlanes, ZPixmap);
  if (img == nullptr) return -1;
  long count = 0;
  for (int y = 0; y < img->height; ++y) {
    for (int x = 0; x < img->width; ++x) count += (XGetPixel(img, x, y) & 0xFFFFFF) == rgb;
  }
  XDestroyImage(img);
  return count;
}

long ReadStatusKb(pid_t pid, const char* key) {
  std::ifstream in("/proc/" + std::to_string(pid) + "/status");
  std::string line;
  while (std::getline(in, line)) {
    if (line.rfind(key, 0) == 0) return std::atol(line.c_str() + std::strlen(key) + 1);
  }
  return -1;
}

// Waits for the next damage event of the display (handling all others),
// for at most timeout. Returns when one came.
std::optional<Clock::time_point> NextDamage(Display* dpy, int damageEvent, Damage damage, Clock::time_point deadline) {
  for (;;) {
    while (XPending(dpy) > 0) {
      XEvent ev;
      XNextEvent(dpy, &ev);
      if (ev.type == damageEvent + XDamageNotify) {
        const auto when = Clock::now();
        XDamageSubtract(dpy, damage, None, None);
        return when;
      }
    }
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return std::nullopt;
    pollfd p{ConnectionNumber(dpy), POLLIN, 0};
    poll(&p, 1, static_cast<int>(left));
  }
}

// ---------------------------------------------------------------- press

struct Target {
  std::string display, name;
  bool caller = false, flash = false, dialog = false;
  unsigned long ink = 0xFFFFFF;  // the big number's colour just after a press
  pid_t pid = 0;
  Display* dpy = nullptr;
  Window win = 0;
  Damage damage = 0;
  int damageEvent = 0;
  Rect number{};  // window coordinates
  KeyCode returnKey = 0;
  std::vector<double> times, firstGame;
  std::map<std::string, long> hwm;  // VmHWM in kB at named moments
};

Target ParseTarget(const std::string& options) {
  Target t;
  std::stringstream ss(options);
  std::string item;
  while (std::getline(ss, item, ',')) {
    const auto eq = item.find('=');
    const std::string key = item.substr(0, eq), value = eq == std::string::npos ? "" : item.substr(eq + 1);
    if (key == "display") t.display = value;
    else if (key == "name") t.name = value;
    else if (key == "caller") t.caller = value == "1";
    else if (key == "flash") t.flash = value == "1";
    else if (key == "dialog") t.dialog = value == "1";
    else if (key == "pid") t.pid = static_cast<pid_t>(std::atol(value.c_str()));
    else if (key == "ink") t.ink = std::stoul(value, nullptr, 16);
    else Die("unknown target field " + key);
  }
  return t;
}

void Settle(Target& t, int ms) {
  // Lets any paint still on its way arrive, then forgets its damage.
  std::this_thread::sleep_for(std::chrono::milliseconds(ms));
  XSync(t.dpy, False);
  while (XPending(t.dpy) > 0) {
    XEvent ev;
    XNextEvent(t.dpy, &ev);
  }
  XDamageSubtract(t.dpy, t.damage, None, None);
  XSync(t.dpy, False);
}

// Waits until the rectangle differs from before; returns when the damage
// that brought the change arrived.
std::optional<Clock::time_point> WaitChange(Target& t, Rect r, const std::vector<char>& before, Clock::duration limit) {
  const auto deadline = Clock::now() + limit;
  for (;;) {
    const auto when = NextDamage(t.dpy, t.damageEvent, t.damage, deadline);
    if (!when) return std::nullopt;
    if (Grab(t.dpy, t.win, r) != before) return when;
  }
}

void Focus(Target& t) {
  XSetInputFocus(t.dpy, t.win, RevertToParent, CurrentTime);
  XSync(t.dpy, False);
}

void Key(Target& t) {
  XTestFakeKeyEvent(t.dpy, t.returnKey, True, CurrentTime);
  XTestFakeKeyEvent(t.dpy, t.returnKey, False, CurrentTime);
  XFlush(t.dpy);
}

void Click(Target& t, Rect r) {
  int rx = 0, ry = 0;
  Window child;
  XTranslateCoordinates(t.dpy, t.win, DefaultRootWindow(t.dpy), r.x + r.w / 2, r.y + r.h / 2, &rx, &ry, &child);
  XTestFakeMotionEvent(t.dpy, DefaultScreen(t.dpy), rx, ry, CurrentTime);
  XTestFakeButtonEvent(t.dpy, 1, True, CurrentTime);
  XTestFakeButtonEvent(t.dpy, 1, False, CurrentTime);
  XFlush(t.dpy);
}

void Connect(Target& t) {
  t.dpy = XOpenDisplay(t.display.c_str());
  if (t.dpy == nullptr) Die("cannot open display " + t.display);
  int major = 0, minor = 0, error = 0;
  if (!XTestQueryExtension(t.dpy, &error, &error, &major, &minor)) Die("no XTest on " + t.display);
  if (!XDamageQueryExtension(t.dpy, &t.damageEvent, &error)) Die("no XDamage on " + t.display);
  const auto deadline = Clock::now() + std::chrono::seconds(20);
  while ((t.win = FindWindow(t.dpy, t.name)) == 0) {
    if (Clock::now() > deadline) Die("no window '" + t.name + "' on " + t.display);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  const int top = ContentTop(t.dpy, t.win);
  const Rect r = ClipToContent(MainNumberRect());
  t.number = {r.x, r.y + top, r.w, r.h};
  t.damage = XDamageCreate(t.dpy, t.win, XDamageReportNonEmpty);
  t.returnKey = XKeysymToKeycode(t.dpy, XK_Return);
  Focus(t);
  std::this_thread::sleep_for(std::chrono::milliseconds(300));  // the window takes the focus
  if (t.pid != 0) t.hwm["start"] = ReadStatusKb(t.pid, "VmHWM:");
  if (t.caller) {
    const Rect b = ButtonRect("PushButton1");
    const Rect button{b.x, b.y + top, b.w, b.h};
    Settle(t, 50);
    const auto before = Grab(t.dpy, t.win, button);
    Click(t, button);
    if (!WaitChange(t, button, before, std::chrono::seconds(5))) Die("the caller button did not change");
    Focus(t);
  }
  Settle(t, 100);
}

// The flash turns the big number black and white every tick. Before the
// press that ends it, wait for a tick, so that the next is a whole period
// away and can't be taken for the press.
void WaitForTick(Target& t) {
  const auto before = Grab(t.dpy, t.win, t.number);
  WaitChange(t, t.number, before, std::chrono::seconds(2));
}

// A press is timed to the first change of the number's pixels; that the
// change was a number drawn, and not one wiped, is checked once it has
// settled, untimed: a few hundred pixels in the number's own colour.
void CheckInk(Target& t, int press) {
  if (CountColour(t.dpy, t.win, t.number, t.ink) < 300) {
    Die("press " + std::to_string(press) + " on '" + t.name + "' left no number drawn in its colour");
  }
}

void PlayGame(Target& t, int settleMs, bool first) {
  for (int press = 1; press <= 90; ++press) {
    Settle(t, settleMs);
    if (press > 1) CheckInk(t, press - 1);
    if (t.flash && press == 6) WaitForTick(t);
    const auto before = Grab(t.dpy, t.win, t.number);
    const auto sent = Clock::now();
    Key(t);
    const auto shown = WaitChange(t, t.number, before, std::chrono::seconds(5));
    if (!shown) Die("press " + std::to_string(press) + " on '" + t.name + "' (" + t.display + ") changed nothing");
    const double ms = Ms(*shown - sent);
    t.times.push_back(ms);
    if (first) t.firstGame.push_back(ms);
  }
  Settle(t, settleMs);
  CheckInk(t, 90);
  if (t.dialog) {
    // The end question comes up as a window of its own; given the focus,
    // Return answers Yes, and the new game shows "0".
    const auto deadline = Clock::now() + std::chrono::seconds(5);
    Window question = 0;
    while ((question = OtherWindow(t.dpy, t.win)) == 0) {
      if (Clock::now() > deadline) Die("no end question on '" + t.name + "'");
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    Settle(t, 100);
    XSetInputFocus(t.dpy, question, RevertToParent, CurrentTime);
    XSync(t.dpy, False);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const auto before = Grab(t.dpy, t.win, t.number);
    Key(t);
    if (!WaitChange(t, t.number, before, std::chrono::seconds(5))) Die("no new game after Yes");
    Focus(t);
    Settle(t, 200);
  }
}

int Press(int argc, char** argv) {
  int games = 6, settleMs = 25;
  std::vector<Target> targets;
  for (int i = 0; i < argc; ++i) {
    const std::string a = argv[i];
    if (a == "--games" && i + 1 < argc) games = std::atoi(argv[++i]);
    else if (a == "--settle-ms" && i + 1 < argc) settleMs = std::atoi(argv[++i]);
    else targets.push_back(ParseTarget(a));
  }
  if (targets.empty()) Die("no target");
  for (Target& t : targets) Connect(t);
  for (int g = 0; g < games; ++g) {
    for (Target& t : targets) {
      Focus(t);
      PlayGame(t, settleMs, g == 0);
      if (t.pid != 0 && g == 0) t.hwm["game"] = ReadStatusKb(t.pid, "VmHWM:");
    }
  }
  // One line per target, key=value, for the script that writes the report.
  for (Target& t : targets) {
    std::printf("target=%s presses=%zu median=%.3f p95=%.3f max=%.3f first_median=%.3f first_max=%.3f later_median=%.3f",
                t.name.c_str(), t.times.size(), Quantile(t.times, 0.5), Quantile(t.times, 0.95),
                *std::max_element(t.times.begin(), t.times.end()), Quantile(t.firstGame, 0.5),
                *std::max_element(t.firstGame.begin(), t.firstGame.end()),
                Quantile(std::vector<double>(t.times.begin() + 90, t.times.end()), 0.5));
    for (const auto& [when, kb] : t.hwm) std::printf(" hwm_%s_kb=%ld", when.c_str(), kb);
    std::printf("\n");
  }
  return 0;
}

// ---------------------------------------------------------------- startup

int Startup(int argc, char** argv) {
  std::string display, name;
  Rect region{};
  unsigned long colour = 0;
  long minPixels = 1;
  int holdMs = 0;
  int i = 0;
  for (; i < argc; ++i) {
    const std::string a = argv[i];
    if (a == "--") { ++i; break; }
    if (i + 1 >= argc) Die("missing value for " + a);
    if (a == "--display") display = argv[++i];
    else if (a == "--name") name = argv[++i];
    else if (a == "--region") {
      if (std::sscanf(argv[++i], "%d,%d,%d,%d", &region.x, &region.y, &region.w, &region.h) != 4) Die("bad region");
    } else if (a == "--colour") colour = std::strtoul(argv[++i], nullptr, 16);
    else if (a == "--min") minPixels = std::atol(argv[++i]);
    else if (a == "--hold-ms") holdMs = std::atoi(argv[++i]);
    else Die("unknown option " + a);
  }
  if (i >= argc) Die("no program to start");
  Display* dpy = XOpenDisplay(display.c_str());
  if (dpy == nullptr) Die("cannot open display " + display);
  int damageEvent = 0, error = 0;
  if (!XDamageQueryExtension(dpy, &damageEvent, &error)) Die("no XDamage");
  const Window root = DefaultRootWindow(dpy);
  XSelectInput(dpy, root, SubstructureNotifyMask);
  XSync(dpy, False);

  setenv("DISPLAY", display.c_str(), 1);
  const auto start = Clock::now();
  const pid_t pid = fork();
  if (pid == 0) {
    execv(argv[i], argv + i);
    _exit(127);
  }

  const auto deadline = start + std::chrono::seconds(30);
  Window win = 0;
  Damage damage = 0;
  Rect r{};
  std::optional<Clock::time_point> painted;
  auto check = [&] { return CountColour(dpy, win, r, colour) >= minPixels; };
  while (!painted) {
    if (Clock::now() > deadline) {
      kill(pid, SIGKILL);
      Die("no painted window '" + name + "'");
    }
    XEvent ev;
    if (XPending(dpy) == 0) {
      pollfd p{ConnectionNumber(dpy), POLLIN, 0};
      poll(&p, 1, 100);
      continue;
    }
    XNextEvent(dpy, &ev);
    const auto when = Clock::now();
    if (win == 0 && ev.type == MapNotify && ev.xmap.event == root && WindowName(dpy, ev.xmap.window) == name) {
      win = ev.xmap.window;
      damage = XDamageCreate(dpy, win, XDamageReportNonEmpty);
      const Rect c = ClipToContent(region);
      r = {c.x, c.y + ContentTop(dpy, win), c.w, c.h};
      if (check()) painted = Clock::now();  // drawn before the damage was asked for
    } else if (win != 0 && ev.type == damageEvent + XDamageNotify) {
      XDamageSubtract(dpy, damage, None, None);
      if (check()) painted = when;
    }
  }
  long hwm = -1, rss = -1;
  if (holdMs > 0) {
    std::this_thread::sleep_for(std::chrono::milliseconds(holdMs));
    hwm = ReadStatusKb(pid, "VmHWM:");
    rss = ReadStatusKb(pid, "VmRSS:");
  }
  kill(pid, SIGKILL);
  waitpid(pid, nullptr, 0);
  std::printf("startup_ms=%.3f hwm_kb=%ld rss_kb=%ld\n", Ms(*painted - start), hwm, rss);
  XCloseDisplay(dpy);
  return 0;
}

// ---------------------------------------------------------------- sound

int Sound(int argc, char** argv) {
  std::string sink;
  int presses = 60, waitMs = 1000, quietMs = 400;
  bool busy = false;
  std::optional<Target> target;
  for (int i = 0; i < argc; ++i) {
    const std::string a = argv[i];
    if (a == "--sink" && i + 1 < argc) sink = argv[++i];
    else if (a == "--presses" && i + 1 < argc) presses = std::atoi(argv[++i]);
    else if (a == "--wait-ms" && i + 1 < argc) waitMs = std::atoi(argv[++i]);
    else if (a == "--quiet-ms" && i + 1 < argc) quietMs = std::atoi(argv[++i]);
    else if (a == "--busy-sink") busy = true;
    else target = ParseTarget(a);
  }
  if (!target || sink.empty() || presses < 1 || presses > 89) Die("sound needs --sink, one target and 1 to 89 presses");
  Target& t = *target;
  t.caller = true;
  // Kept to the end of the process: a pipe's reader thread reads into it
  // until then (destroyed under it, its mutex broke glibc's assertions).
  SinkListener& listener = *new SinkListener(sink, busy);
  const auto appeared = Clock::now();
  Connect(t);
  std::this_thread::sleep_until(appeared + std::chrono::milliseconds(waitMs));
  std::vector<double> times;
  for (int press = 1; press <= presses; ++press) {
    // One clip at a time: the next press waits for the sink's silence.
    if (!listener.WaitQuiet(std::chrono::milliseconds(quietMs), Clock::now() + std::chrono::seconds(8))) {
      Die("the sink never went quiet before press " + std::to_string(press));
    }
    Focus(t);
    const auto sent = Clock::now();
    Key(t);
    const auto heard = listener.FirstSound(sent, sent + std::chrono::seconds(2));
    if (!heard) Die("press " + std::to_string(press) + " was not heard at the sink");
    times.push_back(Ms(*heard - sent));
  }
  std::printf("presses=%zu first=%.2f median=%.2f p95=%.2f max=%.2f all=", times.size(), times.front(),
              Quantile(times, 0.5), Quantile(times, 0.95), *std::max_element(times.begin(), times.end()));
  for (std::size_t i = 0; i < times.size(); ++i) std::printf("%s%.2f", i ? "," : "", times[i]);
  std::printf("\n");
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc >= 2 && std::strcmp(argv[1], "sound") == 0) return Sound(argc - 2, argv + 2);
  if (argc >= 2 && std::strcmp(argv[1], "press") == 0) return Press(argc - 2, argv + 2);
  if (argc >= 2 && std::strcmp(argv[1], "startup") == 0) return Startup(argc - 2, argv + 2);
  std::fprintf(stderr, "usage: xprobe press TARGET... | xprobe startup OPTIONS -- PROGRAM [ARGS...]\n");
  return 2;
}
