#include "tests/game/GameFixture.h"

#include "engine/Module1.h"

namespace testgame {

void PrintTo(const Snapshot& s, std::ostream* os) {
  *os << "{main " << s.main << " (#" << std::hex << s.mainColor << std::dec << (s.flashing ? ", flashing" : "")
      << "), last " << s.last << "/" << s.last1 << "/" << s.last2 << ", gone " << s.gone << ", call '" << s.call
      << "', yellow " << s.yellow.size() << ", grey " << s.grey.size() << ", howMany " << s.howMany << "}";
}

tk::Integer GameTest::Answer(const tk::String& text, tk::Integer style, const tk::String& title) {
  questions.push_back({text, style, title, Module1::HowManyNumbersGone, window ? window->NumbersGone()->Text() : ""});
  if (answers.empty()) {
    ADD_FAILURE() << "unexpected question: " << text;
    return tk::Integer{0};
  }
  const tk::Integer a = answers.front();
  answers.pop_front();
  return a;
}

std::unique_ptr<tk::EntropySource> GameTest::NextSource() {
  if (draws_.empty()) return source_.Previous() ? source_.Previous()() : tk::MakeSystemEntropy();
  auto source = tests::Dictate(draws_.front());
  draws_.pop_front();
  return source;
}

void GameTest::TearDown() {
  window.reset();
  EXPECT_TRUE(answers.empty()) << answers.size() << " answers were never asked for";
}

void GameTest::Open(std::vector<std::vector<tk::Integer>> draws) {
  draws_.assign(draws.begin(), draws.end());
  window = std::make_unique<Window1>();
  window->Constructor();
}

Snapshot GameTest::Look() {
  Window1& w = *window;
  Snapshot s{w.MainNumber()->Text(), w.LastNumber()->Text(), w.LastNumber1()->Text(), w.LastNumber2()->Text(),
             w.NumbersGone()->Text(), w.Label3()->Text(), w.MainNumber()->TextColor(), w.Timer1()->IsRunning(),
             {}, {}, {}, Module1::HowManyNumbersGone, Module1::Bingo_Caller};
  for (tk::Integer i = 0; i < 90; ++i) {
    const tk::Color c = w.n1(i)->TextColor();
    if (c == 0xFFFF00) s.yellow.insert(i + 1);
    if (c == 0xAAAAAA) s.grey.insert(i + 1);
    s.draw.push_back(Module1::bingonumbers(i));
  }
  return s;
}

}  // namespace testgame
