// A failure inside a handler: reported once, earlier steps stand, later
// steps are skipped, and the next event is delivered as usual.
#include "engine/Module1.h"
#include "tests/game/GameFixture.h"

namespace testgame {
namespace {
using namespace std::string_literals;

using FailureRouteTest = GameTest;

TEST_F(FailureRouteTest, AFailureMidPressIsReportedOnceAndLeavesTheEarlierStepsStanding) {
  Open({OrderA()});
  Press();
  Press();
  // Take the call table away: the press fails when it looks up the call.
  const tk::Array<tk::String> calls = Module1::nickname;
  Module1::nickname = tk::Array<tk::String>(-1);
  Press();
  ASSERT_EQ(failures.size(), 1u);
  EXPECT_EQ(failures[0].className, "OutOfBoundsException");

  const Snapshot s = Look();
  const std::string third = std::to_string(OrderA()[2]);
  EXPECT_EQ((std::vector{s.main, s.gone, s.last}), (std::vector{third, "3"s, std::to_string(OrderA()[1])}))
      << "steps before the failure stay done";
  EXPECT_TRUE(s.yellow.count(OrderA()[2]));
  EXPECT_NE(s.call, "") << "the call of the second number is still shown";
  EXPECT_EQ(s.howMany, 2) << "steps after it are not taken";

  Module1::nickname = calls;
  Press();  // delivered as usual: the same number is called again
  EXPECT_EQ(failures.size(), 1u);
  EXPECT_EQ(Look().main, third);
  EXPECT_EQ(Look().howMany, 3);
}

TEST_F(FailureRouteTest, AFailingTickIsReportedAndTheTimerKeepsRunning) {
  Open();
  for (int i = 0; i < 5; ++i) Press();
  // Hide MainNumber from the lookup by name: the tick finds nil.
  window->MainNumber()->SetName("Hidden");
  Tick();
  ASSERT_EQ(failures.size(), 1u);
  EXPECT_EQ(failures[0].className, "NilObjectException");
  EXPECT_TRUE(window->Timer1()->IsRunning());
}

}  // namespace
}  // namespace testgame
