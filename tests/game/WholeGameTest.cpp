// A whole game press by press, the end question, RESET, the draw, and the
// route of a failure out of a press or a tick.
#include <limits>

#include "engine/Module1.h"
#include "tests/game/GameFixture.h"
#include "tests/tables/Tables.h"
#include "toolkit/Application.h"
#include "toolkit/Strings.h"

namespace testgame {
namespace {
using namespace std::string_literals;

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
  const Question& q = questions[1];  // asked over the 90th number
  EXPECT_EQ(std::tuple(q.text, q.style, q.title, q.howManyWhileAsked, q.goneWhileAsked),
            std::tuple("All 90 have numbers gone?" + tk::EndOfLine() + "New Game? - Yes/No", 36, "", 90, "90"));

  s = Look();
  ExpectNewGame(s);
  EXPECT_EQ(s.draw, OrderA());
  EXPECT_EQ(s.mainColor, kWhite) << "a new game does not bring the near-white back";
  EXPECT_TRUE(failures.empty());
  Press();
  ExpectAfterPress(Look(), OrderA(), 0);
}

// No asks the application to end, with status 0; any other answer does
// nothing at all.
TEST_F(WholeGameTest, AtTheEndNoQuitsWithStatusZeroAndAnyOtherAnswerDoesNothing) {
  std::vector<tk::Integer> ended;
  const tk::ScopedHook quit(tk::SetQuitRequester, [&](tk::Integer status) { ended.push_back(status); });
  for (tk::Integer answer : {tk::Integer{0}, tk::kAnswerNo}) {
    Open({OrderA()});
    for (int i = 0; i < 89; ++i) Press();
    answers.push_back(answer);
    Press();
    const Snapshot s = Look();
    EXPECT_EQ(s.gone, "90");
    EXPECT_EQ(s.howMany, 90) << "nothing runs after answer " << answer;
    EXPECT_EQ(s.yellow.size(), 90u);
    EXPECT_EQ(ended, answer == tk::kAnswerNo ? std::vector<tk::Integer>{0} : std::vector<tk::Integer>{});
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

// RESET mid-game with the fifth number at black: No, or a dialog closed
// any other way, changes nothing; Yes lays a new game and leaves the flash
// blinking 0 until the next press.
TEST_F(WholeGameTest, ResetAsksFirstAndYesLeavesTheFlashRunning) {
  Open({OrderA(), OrderB()});
  for (int i = 0; i < 5; ++i) Press();
  Tick();
  const Snapshot before = Look();
  ASSERT_EQ(before.mainColor, kBlack);
  answers.assign({tk::kAnswerNo, tk::Integer{0}, tk::kAnswerYes});
  for (int i = 0; i < 2; ++i) {
    Reset();
    EXPECT_EQ(Look(), before);
  }
  ASSERT_EQ(questions.size(), 2u);
  EXPECT_EQ(std::tuple(questions[0].text, questions[0].style, questions[0].title),
            std::tuple("RESET - Are you sure?", 36, ""));

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

// The draw: rejection sampling over all 90 indices, fed by Random, whose
// range rejects the words that would favour low results. Its fairness over
// many draws is the fairness suite's (tests/fairness).
using DrawTest = GameTest;
TEST_F(DrawTest, TheOrderIsExactlyWhatTheSourceDictatesRejectionsIncluded) {
  // 2^64 leaves a remainder of 16 over 90: the top 16 words are drawn
  // again, and so are candidates already placed, each word used once. So
  // 90 (the 17th word from the top, 89 modulo 90), 7, 3, then 1 to 89 with
  // 7 and 3 skipped, ending on the last word.
  constexpr std::uint64_t kMax = std::numeric_limits<std::uint64_t>::max();
  auto source = std::make_unique<tests::ScriptedEntropy>();
  source->words = {kMax, kMax - 15, kMax - 16, 6, 6, 2, 89, 6, 2};
  std::vector<tk::Integer> expected = {90, 7, 3};
  for (tk::Integer n = 1; n <= 89; ++n) {
    source->words.push_back(std::uint64_t(n - 1));
    if (n != 7 && n != 3) expected.push_back(n);
  }
  const tk::ScopedHook dictated(tk::Random::SetSourceFactory, tk::Random::SourceFactory([&] { return std::move(source); }));
  Open();
  EXPECT_EQ(Look().draw, expected);
}

// A failure inside a handler: reported once, earlier steps stand, later
// steps are skipped, and the next event is delivered as usual.
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
  EXPECT_EQ(s.call, tables::kCalls[std::size_t(OrderA()[1] - 1)]) << "the call of the second number still stands";
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
