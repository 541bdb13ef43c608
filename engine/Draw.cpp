// The draw: the whole calling order of a game, fixed before its first press.
#include "engine/Module1.h"
#include "toolkit/Random.h"
#include "toolkit/Strings.h"
#include "window/Window1.h"

using namespace Module1;

// Plain rejection sampling over all 90 indices: each candidate is an
// independent pick, and one already placed is thrown away. With a uniform
// InRange every order of the 90 numbers is equally likely. HowManyNumbersGone
// and n are the module's on purpose: the draw borrows them as its fill index
// and candidate. On entry HowManyNumbersGone is 0 and thearray all false
// (NumbersReset sees to it).
void Window1::StoreTheRandomNumbers() {
  tk::Random random;  // a fresh object, seeded afresh from the system
  while (HowManyNumbersGone < 90) {
    n = random.InRange(0, 89);
    while (thearray.Get(n)) {
      tk::RuntimeBackgroundTask();
      n = random.InRange(0, 89);
    }
    thearray.Set(n, true);
    bingonumbers.Set(HowManyNumbersGone, n + 1);
    HowManyNumbersGone = HowManyNumbersGone + 1;
    tk::RuntimeBackgroundTask();
  }
  HowManyNumbersGone = 0;
}
