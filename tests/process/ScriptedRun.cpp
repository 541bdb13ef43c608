// The real program, start-up to exit, with NEXT NUMBER pressed from the
// event loop over and over and the end question answered No ("dialog" as
// the first argument leaves it standing, unanswered). A second argument N
// has the system ask the application to quit with the Nth press, as a
// logout does; "hang" as the third has the shutdown's last step never
// return. Prints what it saw; its exit status is the program's.
#include <QCoreApplication>
#include <QEvent>
#include <QString>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <thread>

#include "shell/Startup.h"
#include "toolkit/Application.h"
#include "toolkit/MsgBox.h"
#include "window/ImplicitWindow.h"

int main(int argc, char** argv) {
  const int quitWith = argc > 2 ? QString::fromLatin1(argv[2]).toInt() : 0;
  int presses = 0;
  if (std::strcmp(argc > 1 ? argv[1] : "", "dialog") != 0) {
    tk::SetMsgBoxAnswerer([](const tk::String&, tk::Integer, const tk::String&) { return tk::kAnswerNo; });
  }
  // Presses come from the event loop, as a person's would.
  QTimer presser;
  QObject::connect(&presser, &QTimer::timeout, [&] {
    ++presses;
    // Sent at once from the event loop after the press, or while its
    // question stands, as the platform sends its termination request (a
    // posted Quit would wait for the question's loop to end). Pressing goes
    // on after it: a refused quit plays the game out to its question.
    if (presses == quitWith) {
      std::printf("quit requested with press %d\n", presses);
      QTimer::singleShot(0, [] {
        QEvent quit(QEvent::Quit);
        QCoreApplication::sendEvent(QCoreApplication::instance(), &quit);
      });
    }
    ImplicitWindow1().PushButton2()->Push();
  });
  QTimer::singleShot(0, [&] { presser.start(0); });
  // Every way out takes the one shutdown path, past the finalizers.
  tk::AtFinalize([] { std::printf("finalized\n"); });
  if (argc > 3 && std::strcmp(argv[3], "hang") == 0) {
    tk::AtFinalize([] {
      std::printf("finalizing hangs\n");
      std::fflush(stdout);
      for (;;) std::this_thread::sleep_for(std::chrono::hours(1));
    });
  }
  char* args[] = {argv[0], nullptr};
  int count = 1;
  const int status = shell::main(count, args);
  std::printf("exit %d after %d presses\n", status, presses);
  return status;
}
