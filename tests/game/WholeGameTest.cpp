// A whole game, press by press, and what the end question leads to.
#include "engine/Module1.h"
#include "caller/CallTable.h"
#include "tests/game/GameFixture.h"
#include "toolkit/Strings.h"

namespace testgame {
namespace {

std::string Call(tk::Integer number) { return tk::Split(caller::kNicknameText, ",")(number - 1); }

// What every display must show after press H + 1 of a game drawn as order.
void ExpectAfterPress(const Snapshot& s, const std::vector<tk::Integer>& order, std::size_t H) {
  auto num = [&](std::size_t i) { return std::to_string(order[i]); };
  EXPECT_EQ(s.main, num(H));
  EXPECT_EQ(s.gone, std::to_string(H + 1));
  EXPECT_EQ(s.last, H > 0 ? num(H - 1) : "0");
  EXPECT_EQ(s.last1, H > 1 ? num(H - 2) : "0");
  EXPECT_EQ(s.last2, H > 2 ? num(H - 3) : "0");
  EXPECT_EQ(s.call, Call(order[H]));
  EXPECT_EQ(s.flashing, H == 4) << "only the fifth number flashes";
  const std::set<tk::Integer> called(order.begin(), order.begin() + static_cast<long>(H) + 1);
  EXPECT_EQ(s.yellow, called);
  EXPECT_EQ(s.yellow.size() + s.grey.size(), 90u) << "every cell is yellow or play grey";
}

void ExpectNewGame(const Snapshot& s) {
  for (const std::string* t : {&s.main, &s.last, &s.last1, &s.last2, &s.gone}) EXPECT_EQ(*t, "0");
  EXPECT_EQ(s.call, "Ok- Lets start a new game");
  EXPECT_TRUE(s.yellow.empty());
  EXPECT_EQ(s.grey.size(), 90u);
  EXPECT_EQ(s.howMany, 0);
}

TEST_F(GameTest, OpeningShowsANewGameWithTheLayoutsNearWhiteNumber) {
  Open({OrderA()});
  const Snapshot s = Look();
  ExpectNewGame(s);
  EXPECT_EQ(s.draw, OrderA());
  EXPECT_EQ(s.mainColor, 0xFFFEFEu) << "the first game keeps the layout's near-white until the first press";
  EXPECT_FALSE(s.flashing);
  EXPECT_FALSE(s.caller);
  for (tk::Integer i = 0; i < 90; ++i) EXPECT_EQ(window->n1(i)->Text(), std::to_string(i + 1));
  EXPECT_EQ(Module1::nickname.Count(), 90);
}

TEST_F(GameTest, AWholeGameUpdatesEveryDisplayInOrderThenYesStartsANewDraw) {
  Open({OrderA(), OrderB()});
  const std::vector<tk::Integer> order = OrderA();
  for (std::size_t H = 0; H < 90; ++H) {
    if (H == 4) window->MainNumber()->SetTextColor(0x123456);  // press 5 must leave the colour alone
    if (H == 89) answers.push_back(tk::kAnswerYes);
    Press();
    if (H == 89) break;  // the answer has already laid the next game
    SCOPED_TRACE("press " + std::to_string(H + 1));
    const Snapshot s = Look();
    ExpectAfterPress(s, order, H);
    EXPECT_EQ(s.mainColor, H == 4 ? 0x123456u : 0xFFFFFFu);
    EXPECT_EQ(s.howMany, static_cast<tk::Integer>(H + 1));
  }
  ASSERT_EQ(questions.size(), 1u);
  EXPECT_EQ(questions[0].text, "All 90 have numbers gone?" + tk::EndOfLine() + "New Game? - Yes/No");
  EXPECT_EQ(questions[0].style, 36);
  EXPECT_EQ(questions[0].title, "");
  EXPECT_EQ(questions[0].howManyWhileAsked, 90) << "the question stands over the 90th number";
  EXPECT_EQ(questions[0].goneWhileAsked, "90");

  const Snapshot s = Look();
  ExpectNewGame(s);
  EXPECT_EQ(s.draw, OrderB());
  EXPECT_EQ(s.mainColor, 0xFFFFFFu) << "a new game does not bring the near-white back";
  EXPECT_TRUE(failures.empty());

  Press();  // the first press of the new game
  ExpectAfterPress(Look(), OrderB(), 0);
}

TEST_F(GameTest, NoAtTheEndQuitsWithoutTouchingAnythingElse) {
  Open();
  for (int i = 0; i < 89; ++i) Press();
  answers.push_back(tk::kAnswerNo);
  Press();
  EXPECT_TRUE(failures.empty()) << "ending is not a failure";
  const Snapshot s = Look();
  EXPECT_EQ(s.gone, "90");
  EXPECT_EQ(s.howMany, 90) << "nothing runs after the request to quit";
  EXPECT_EQ(s.yellow.size(), 90u);
}

TEST_F(GameTest, AnAnswerThatIsNeitherYesNorNoDoesNothing) {
  Open({OrderA()});
  for (int i = 0; i < 89; ++i) Press();
  answers.push_back(0);
  Press();
  EXPECT_EQ(Look().howMany, 90);
  // A further press would read past the draw: it fails at once, before any
  // label changes, and is reported rather than crashing.
  const Snapshot before = Look();
  Press();
  EXPECT_EQ(Look(), before);
  ASSERT_EQ(failures.size(), 1u);
  EXPECT_EQ(failures[0].className, "OutOfBoundsException");
}

TEST_F(GameTest, EverySystemDrawIsAPermutationAndGamesDiffer) {
  Open();
  const std::vector<tk::Integer> first = Look().draw;
  answers.push_back(tk::kAnswerYes);
  Reset();
  const std::vector<tk::Integer> second = Look().draw;
  for (const auto& draw : {first, second}) {
    const std::set<tk::Integer> numbers(draw.begin(), draw.end());
    EXPECT_EQ(numbers.size(), 90u);
    EXPECT_EQ(*numbers.begin(), 1);
    EXPECT_EQ(*numbers.rbegin(), 90);
  }
  EXPECT_NE(first, second) << "two games alike: the generator is not fresh";
}

}  // namespace
}  // namespace testgame
