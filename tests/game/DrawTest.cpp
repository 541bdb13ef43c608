// The draw: rejection sampling over all 90 indices, fed by Random. Its
// fairness over many draws is the fairness suite's (tests/fairness).
#include "tests/game/GameFixture.h"

namespace testgame {
namespace {

using DrawTest = GameTest;

TEST_F(DrawTest, TheOrderIsExactlyWhatTheSourceDictatesRejectionsIncluded) {
  // Candidates already placed are thrown away, each word used once: 7, 3,
  // then 1 to 90 with 7 and 3 skipped, ending on the last word.
  std::vector<tk::Integer> dictated = {7, 7, 3, 7, 3};
  std::vector<tk::Integer> expected = {7, 3};
  for (tk::Integer n = 1; n <= 90; ++n) {
    dictated.push_back(n);
    if (n != 7 && n != 3) expected.push_back(n);
  }
  Open({dictated});
  EXPECT_EQ(Look().draw, expected);
}

}  // namespace
}  // namespace testgame
