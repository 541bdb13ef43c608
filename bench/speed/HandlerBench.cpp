// The time of NEXT NUMBER's handler itself, in-process: a real Window1 on
// the offscreen platform, pressed through whole games, each press timed
// alone. The events that follow a press (its paint) are let run between
// presses, untimed, as the event loop would. The end question is answered
// Yes, so the 90th press of a game includes the new game's reset and draw.
//
//   handler_bench <calloquin executable> [games]
// The executable only says where the bundle's clips are.
#include <QApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "bench/speed/Quantile.h"
#include "toolkit/Application.h"
#include "toolkit/FolderItem.h"
#include "toolkit/MsgBox.h"
#include "window/Window1.h"

namespace {

using Clock = std::chrono::steady_clock;

struct Times {
  std::vector<double> plain, last;  // presses 1 to 89; the 90th, with its reset
};

void Report(const char* what, const Times& t) {
  std::printf("case=%s presses=%zu median=%.4f p95=%.4f max=%.4f last_median=%.4f last_max=%.4f\n", what,
              t.plain.size(), Quantile(t.plain, 0.5), Quantile(t.plain, 0.95),
              *std::max_element(t.plain.begin(), t.plain.end()), Quantile(t.last, 0.5),
              *std::max_element(t.last.begin(), t.last.end()));
}

void PlayGames(Window1& window, int games, Times& times) {
  for (int g = 0; g < games; ++g) {
    for (int press = 1; press <= 90; ++press) {
      tk::Ref<tk::PushButton> button = window.PushButton2();
      const auto start = Clock::now();
      window.PushButton2_Action(*button);
      const auto end = Clock::now();
      (press < 90 ? times.plain : times.last).push_back(std::chrono::duration<double, std::milli>(end - start).count());
      QCoreApplication::processEvents();
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s <calloquin executable> [games]\n", argv[0]);
    return 2;
  }
  const int games = argc > 2 ? std::atoi(argv[2]) : 20;
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  setenv("SDL_AUDIODRIVER", "dummy", 0);
  int qtArgc = 1;
  tk::RuntimeInit(qtArgc, argv);
  tk::EnsureGui();
  const auto executable = std::make_shared<tk::FolderItem>(argv[1]);
  tk::SetExecutableFileSource([executable] { return executable; });
  tk::SetMsgBoxAnswerer([](const tk::String&, tk::Integer, const tk::String&) { return tk::kAnswerYes; });

  auto window = std::make_unique<Window1>();
  window->Constructor();
  QCoreApplication::processEvents();

  Times off, cold, warm;
  PlayGames(*window, games, off);
  window->PushButton1_Action(*window->PushButton1());  // the caller on
  PlayGames(*window, 1, cold);  // every clip opened at its first use
  PlayGames(*window, games, warm);
  Report("caller_off", off);
  Report("caller_on_first_game", cold);
  Report("caller_on_later_games", warm);
  std::fflush(stdout);
  // The window goes before the GUI, as at the program's own end.
  window.reset();
  tk::RuntimePerformFinalizers();
  return 0;
}
