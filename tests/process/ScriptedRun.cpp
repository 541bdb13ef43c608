// The real program, start-up to exit, with the operator replaced by a
// script: NEXT NUMBER is pressed from the event loop over and over, and the
// end question is answered from the command line ("yes,no" answers Yes at
// the end of the first game and No at the end of the second). A second
// argument N has the system ask the application to quit after the Nth press,
// as a logout or the Dock's Quit does. Prints what it saw; its exit status
// is the program's.
#include <QCoreApplication>
#include <QEvent>
#include <QStringList>
#include <QTimer>

#include <cstdio>
#include <deque>

#include "engine/Module1.h"
#include "shell/Startup.h"
#include "toolkit/MsgBox.h"
#include "window/ImplicitWindow.h"

int main(int argc, char** argv) {
  std::deque<tk::Integer> answers;
  for (const QString& a : QString::fromLatin1(argc > 1 ? argv[1] : "").split(',', Qt::SkipEmptyParts))
    answers.push_back(a == "yes" ? tk::kAnswerYes : tk::kAnswerNo);
  const int quitAfter = argc > 2 ? QString::fromLatin1(argv[2]).toInt() : 0;
  int presses = 0;
  tk::SetMsgBoxAnswerer([&](const tk::String&, tk::Integer, const tk::String&) {
    std::printf("asked after %d presses with %lld gone\n", presses, static_cast<long long>(Module1::HowManyNumbersGone));
    std::fflush(stdout);
    if (answers.empty()) return tk::kAnswerNo;
    const tk::Integer a = answers.front();
    answers.pop_front();
    return a;
  });
  // Presses come from the event loop, as a person's would.
  QTimer presser;
  QObject::connect(&presser, &QTimer::timeout, [&] {
    ++presses;
    ImplicitWindow1().PushButton2()->Push();
    // Pressing goes on: a refused quit plays the game out to its question.
    if (presses == quitAfter) {
      std::printf("quit requested after %d presses\n", presses);
      QCoreApplication::postEvent(QCoreApplication::instance(), new QEvent(QEvent::Quit));
    }
  });
  QTimer::singleShot(0, [&] { presser.start(0); });
  char* args[] = {argv[0], nullptr};
  int count = 1;
  const int status = shell::main(count, args);
  std::printf("exit %d after %d presses\n", status, presses);
  return status;
}
