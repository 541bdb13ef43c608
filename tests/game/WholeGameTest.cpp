// A whole game press by press, the end question, and RESET.
#include "engine/Module1.h"
#include "tests/game/GameFixture.h"
#include "tests/tables/Tables.h"
#include "toolkit/Strings.h"

namespace testgame {
namespace {

constexpr tk::Color kWhite = 0xFFFFFF, kBlack = 0x000000;

// What every display must show after press H + 1 of a game drawn as order.
void ExpectAfterPress(const Snapshot& s, const std::vector<tk::Integer>& order, std::size_t H) {
  auto num = [&](std::size_t back) { return H >= back ? std::to_string(order[H - back]) : "0"; };
  EXPECT_EQ(s.main, num(0));
  EXPECT_EQ(s.gone, std::to_string(H + 1));
  EXPECT_EQ((std::vector{s.last, s.last1, s.last2}), (std::vector{num(1), num(2), num(3)}));
  EXPECT_EQ(s.call, tables::kCalls[std::size_t(order[H] - 1)]);
  EXPECT_EQ(s.flashing, H == 4) << "only the fifth number flashes";
  EXPECT_EQ(s.yellow, std::set<tk::Integer>(order.begin(), order.begin() + static_cast<long>(H) + 1));
  EXPECT_EQ(s.yellow.size() + s.grey.size(), 90u) << "every cell is yellow or play grey";
}

void ExpectNewGame(const Snapshot& s) {
  for (const std::string* t : {&s.main, &s.last, &s.last1, &s.last2, &s.gone}) EXPECT_EQ(*t, "0");
  EXPECT_EQ(s.call, "Ok- Lets start a new game");
  EXPECT_EQ(s.grey.size(), 90u);
  EXPECT_EQ(s.howMany, 0);
}

using WholeGameTest = GameTest;

TEST_F(WholeGameTest, AWholeGamePressByPressThenYesLaysTheNextDraw) {
  Open({OrderA(), OrderB(), OrderA()});
  const Snapshot opening = Look();
  ExpectNewGame(opening);
  EXPECT_EQ(opening.draw, OrderA());
  EXPECT_EQ(opening.mainColor, 0xFFFEFEu) << "the first game keeps the layout's near-white until the first press";
  EXPECT_FALSE(opening.flashing || opening.caller);
  for (tk::Integer i = 0; i < 90; ++i) EXPECT_EQ(window->n1(i)->Text(), std::to_string(i + 1));

  answers.push_back(tk::kAnswerYes);
  Reset();  // before the first press: the draw is replaced unseen
  Snapshot s = Look();
  EXPECT_EQ(s.draw, OrderB());
  s.draw = opening.draw;
  EXPECT_EQ(s, opening) << "nothing visible changes, the near-white included";
  Tick();
  EXPECT_EQ(Look().mainColor, kWhite) << "near-white is not white: a tick on it gives white";

  // The 89 presses of OrderB and the first of OrderA show all 90 calls.
  const std::vector<tk::Integer> order = OrderB();
  for (std::size_t H = 0; H < 89; ++H) {
    if (H == 4) window->MainNumber()->SetTextColor(0x123456);  // press 5 must leave the colour alone
    Press();
    SCOPED_TRACE("press " + std::to_string(H + 1));
    s = Look();
    ExpectAfterPress(s, order, H);
    EXPECT_EQ(s.mainColor, H == 4 ? 0x123456u : kWhite) << "the sixth press ends the flash at white";
    EXPECT_EQ(s.howMany, static_cast<tk::Integer>(H + 1));
    for (tk::Color c : H == 4 ? std::vector{kWhite, kBlack, kWhite, kBlack} : std::vector<tk::Color>{}) {
      Tick();
      EXPECT_EQ(Look().mainColor, c);
    }
  }
  answers.push_back(tk::kAnswerYes);
  Press();
  ASSERT_EQ(questions.size(), 2u);
  EXPECT_EQ(questions[1].text, "All 90 have numbers gone?" + tk::EndOfLine() + "New Game? - Yes/No");
  EXPECT_EQ(questions[1].style, 36);
  EXPECT_EQ(questions[1].title, "");
  EXPECT_EQ(questions[1].howManyWhileAsked, 90) << "the question stands over the 90th number";
  EXPECT_EQ(questions[1].goneWhileAsked, "90");

  s = Look();
  ExpectNewGame(s);
  EXPECT_EQ(s.draw, OrderA());
  EXPECT_EQ(s.mainColor, kWhite) << "a new game does not bring the near-white back";
  EXPECT_TRUE(failures.empty());
  Press();
  ExpectAfterPress(Look(), OrderA(), 0);
}

TEST_F(WholeGameTest, AtTheEndNoQuitsAndAnyOtherAnswerDoesNothing) {
  for (tk::Integer answer : {tk::kAnswerNo, tk::Integer{0}}) {
    Open({OrderA()});
    for (int i = 0; i < 89; ++i) Press();
    answers.push_back(answer);
    Press();
    const Snapshot s = Look();
    EXPECT_EQ(s.gone, "90");
    EXPECT_EQ(s.howMany, 90) << "nothing runs after answer " << answer;
    EXPECT_EQ(s.yellow.size(), 90u);
  }
  EXPECT_TRUE(failures.empty()) << "ending is not a failure";
  // A further press would read past the draw: it fails at once, before any
  // label changes, and is reported rather than crashing.
  const Snapshot before = Look();
  Press();
  EXPECT_EQ(Look(), before);
  ASSERT_EQ(failures.size(), 1u);
  EXPECT_EQ(failures[0].className, "OutOfBoundsException");
}

// RESET mid-game with the fifth number at black: No changes nothing; Yes
// lays a new game and leaves the flash blinking 0 until the next press.
TEST_F(WholeGameTest, ResetAsksFirstAndYesLeavesTheFlashRunning) {
  Open({OrderA(), OrderB()});
  for (int i = 0; i < 5; ++i) Press();
  Tick();
  const Snapshot before = Look();
  ASSERT_EQ(before.mainColor, kBlack);
  answers.assign({tk::kAnswerNo, tk::kAnswerYes});
  Reset();
  EXPECT_EQ(Look(), before);
  ASSERT_EQ(questions.size(), 1u);
  EXPECT_EQ(questions[0].text, "RESET - Are you sure?");
  EXPECT_EQ(questions[0].style, 36);

  Reset();
  const Snapshot s = Look();
  ExpectNewGame(s);
  EXPECT_EQ(s.draw, OrderB());
  EXPECT_TRUE(s.flashing) << "a reset must not stop the flash";
  EXPECT_EQ(s.mainColor, kBlack) << "nor repaint the number";
  for (tk::Color c : {kWhite, kBlack}) {
    Tick();
    EXPECT_EQ(Look().mainColor, c);
  }
  Press();  // a first press, which ends the flash
  ExpectAfterPress(Look(), OrderB(), 0);
  EXPECT_EQ(Look().mainColor, kWhite);
}

}  // namespace
}  // namespace testgame
