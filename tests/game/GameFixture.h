#pragma once
// A real Window1 on the offscreen platform, with the three side effects
// replaced: the dialog is answered from a script, failures are recorded
// instead of shown, and the draw can be dictated as a list of numbers.
#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tests/Draws.h"
#include "toolkit/Dispatch.h"
#include "toolkit/MsgBox.h"
#include "toolkit/ScopedHook.h"
#include "window/Window1.h"

namespace testgame {

// What the operator can see, and the game's globals, at one moment.
struct Snapshot {
  std::string main, last, last1, last2, gone, call;
  tk::Color mainColor;
  bool flashing;
  std::set<tk::Integer> yellow;  // numbers whose cell is yellow
  std::set<tk::Integer> grey;    // numbers whose cell is the play grey
  std::vector<tk::Integer> draw;
  tk::Integer howMany;
  bool caller;
  bool operator==(const Snapshot&) const = default;
};
void PrintTo(const Snapshot& s, std::ostream* os);

struct Question {
  std::string text;
  tk::Integer style;
  std::string title;
  tk::Integer howManyWhileAsked;
  std::string goneWhileAsked;
};

using tests::OrderA;
using tests::OrderB;

class GameTest : public ::testing::Test {
 protected:
  void TearDown() override;

  // Opens the window. Each given draw is dictated to the next new Random,
  // in turn; after them, the fixed draws of every test (tests/Draws.h).
  void Open(std::vector<std::vector<tk::Integer>> draws = {});
  void Press() { window->PushButton2()->Push(); }
  void Reset() { window->PushButton3()->Push(); }
  void Tick() { window->Timer1()->_CallAction(); }
  Snapshot Look();

  std::unique_ptr<Window1> window;
  std::deque<tk::Integer> answers;  // the operator's answers, in order
  std::vector<Question> questions;  // what was asked
  std::vector<tk::FailureReport> failures;

 private:
  tk::Integer Answer(const tk::String& text, tk::Integer style, const tk::String& title);
  std::unique_ptr<tk::EntropySource> NextSource();

  std::deque<std::vector<tk::Integer>> draws_;
  // The operator's answers, the failures and the draws are the test's for
  // as long as the fixture lives.
  tk::ScopedHook<tk::MsgBoxAnswerer> answerer_{
      tk::SetMsgBoxAnswerer, [this](const tk::String& t, tk::Integer s, const tk::String& ti) { return Answer(t, s, ti); }};
  tk::ScopedHook<tk::FailureReporter> reporter_{tk::SetFailureReporter,
                                                [this](const tk::FailureReport& r) { failures.push_back(r); }};
  tk::ScopedHook<tk::Random::SourceFactory> source_{tk::Random::SetSourceFactory, [this] { return NextSource(); }};
};

}  // namespace testgame
