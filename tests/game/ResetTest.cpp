// RESET: a question first; No carries on, Yes lays a new game and leaves
// the flash and the caller as they were.
#include "engine/Module1.h"
#include "tests/game/GameFixture.h"

namespace testgame {
namespace {

TEST_F(GameTest, ResetAnsweredNoChangesNothingAtAll) {
  Open();
  for (int i = 0; i < 5; ++i) Press();  // mid-game, flashing
  Tick();
  const Snapshot before = Look();
  answers.push_back(tk::kAnswerNo);
  Reset();
  EXPECT_EQ(Look(), before);
  ASSERT_EQ(questions.size(), 1u);
  EXPECT_EQ(questions[0].text, "RESET - Are you sure?");
  EXPECT_EQ(questions[0].style, 36);
}

TEST_F(GameTest, ResetDuringTheFlashKeepsZeroBlinkingUntilTheNextPress) {
  Open({OrderA(), OrderB()});
  for (int i = 0; i < 5; ++i) Press();
  Tick();
  ASSERT_EQ(Look().mainColor, 0x000000u);
  answers.push_back(tk::kAnswerYes);
  Reset();
  Snapshot s = Look();
  EXPECT_EQ(s.main, "0");
  EXPECT_TRUE(s.flashing) << "a reset must not stop the flash";
  EXPECT_EQ(s.mainColor, 0x000000u) << "nor repaint the number";
  EXPECT_EQ(s.draw, OrderB());
  Tick();
  EXPECT_EQ(Look().mainColor, 0xFFFFFFu);
  Tick();
  EXPECT_EQ(Look().mainColor, 0x000000u);
  Press();  // the first press of the new game ends it
  s = Look();
  EXPECT_FALSE(s.flashing);
  EXPECT_EQ(s.mainColor, 0xFFFFFFu);
  EXPECT_EQ(s.main, std::to_string(OrderB()[0]));
}

TEST_F(GameTest, ResetRightAfterStartReplacesTheDrawUnseen) {
  Open({OrderA(), OrderB()});
  Snapshot before = Look();
  answers.push_back(tk::kAnswerYes);
  Reset();
  Snapshot after = Look();
  EXPECT_EQ(after.draw, OrderB());
  after.draw = before.draw;
  EXPECT_EQ(after, before) << "nothing visible changes, the near-white included";
}

TEST_F(GameTest, ResetYesMidGameGreysTheBoardAndKeepsTheCaller) {
  Open({OrderA(), OrderB()});
  Module1::Bingo_Caller = false;
  for (int i = 0; i < 12; ++i) Press();
  answers.push_back(tk::kAnswerYes);
  Reset();
  const Snapshot s = Look();
  EXPECT_TRUE(s.yellow.empty());
  EXPECT_EQ(s.grey.size(), 90u);
  EXPECT_EQ(s.howMany, 0);
  EXPECT_EQ(s.call, "Ok- Lets start a new game");
  for (const std::string* t : {&s.main, &s.last, &s.last1, &s.last2, &s.gone}) EXPECT_EQ(*t, "0");
  Press();
  EXPECT_EQ(Look().main, std::to_string(OrderB()[0])) << "the next press is a first press";
  EXPECT_EQ(Look().last, "0");
}

}  // namespace
}  // namespace testgame
