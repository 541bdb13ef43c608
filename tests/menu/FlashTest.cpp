// The flash of the fifth number, with the ticks delivered by the test.
#include "tests/game/GameFixture.h"

namespace testgame {
namespace {

constexpr tk::Color kWhite = 0xFFFFFF, kBlack = 0x000000;

TEST_F(GameTest, TheFifthNumberBlinksUntilTheSixthPress) {
  Open();
  // The layout's near-white is not white: a tick on it gives white, not black.
  ASSERT_EQ(Look().mainColor, 0xFFFEFEu);
  window->Timer1_Action(*window->Timer1());
  EXPECT_EQ(Look().mainColor, kWhite);

  for (int press = 1; press <= 4; ++press) {
    Press();
    EXPECT_FALSE(Look().flashing) << "press " << press;
  }
  Press();
  Snapshot s = Look();
  EXPECT_TRUE(s.flashing);
  EXPECT_EQ(s.mainColor, kWhite) << "the fifth number starts white";
  for (tk::Color expected : {kBlack, kWhite, kBlack}) {
    Tick();
    EXPECT_EQ(Look().mainColor, expected);
  }
  Press();  // from black
  s = Look();
  EXPECT_FALSE(s.flashing) << "the sixth press stops the flash";
  EXPECT_EQ(s.mainColor, kWhite) << "and shows its number white at once";
  EXPECT_EQ(s.gone, "6");
}

}  // namespace
}  // namespace testgame
