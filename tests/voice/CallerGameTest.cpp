// The caller over whole games: which clips are opened and played, and when.
#include <algorithm>

#include "engine/Module1.h"
#include "tests/voice/VoiceFixture.h"
#include "toolkit/Strings.h"

namespace voicetest {
namespace {

using CallerGameTest = VoiceTest;

TEST_F(CallerGameTest, WholeGameOpensEachClipOnceInDrawOrderAndTheNextOpensNone) {
  PressCaller();
  const std::vector<tk::Integer> first = Draw();
  PressNext(90);
  EXPECT_EQ(questions_, 1);
  EXPECT_TRUE(reports_.empty());
  EXPECT_EQ(log_.opened, ClipNames(first));
  EXPECT_EQ(log_.played, ClipNames(first));
  EXPECT_EQ(log_.openedPaths.front(), (Resources() / ClipName(first.front())).string());
  EXPECT_EQ(executableLookups_, 90) << "each member looks up the folder itself, once";

  // Yes started a new game with the caller still on.
  EXPECT_EQ(window_.PushButton1()->Caption(), "BINGO CALLER - ON");
  EXPECT_TRUE(Module1::Bingo_Caller);
  const std::vector<tk::Integer> second = Draw();
  PressNext(90);
  EXPECT_EQ(log_.opened.size(), 90u);
  EXPECT_EQ(executableLookups_, 90);
  std::vector<std::string> both = ClipNames(first);
  for (const auto& name : ClipNames(second)) both.push_back(name);
  EXPECT_EQ(log_.played, both);
}

TEST_F(CallerGameTest, OnlyNumbersSpokenWithTheCallerOnAreOpened) {
  const std::vector<tk::Integer> first = Draw();
  PressNext(10);  // caller off
  PressCaller();
  PressNext(80);
  EXPECT_EQ(log_.opened, ClipNames(first, 10, 90));

  // The next game opens the ten that were skipped, as they come up.
  const std::vector<tk::Integer> second = Draw();
  PressNext(90);
  std::vector<std::string> expected = ClipNames(first, 10, 90);
  for (const tk::Integer k : second) {
    if (std::find(first.begin(), first.begin() + 10, k) != first.begin() + 10) expected.push_back(ClipName(k));
  }
  EXPECT_EQ(log_.opened, expected);
  EXPECT_EQ(log_.played.size(), 170u);
}

TEST_F(CallerGameTest, ChainMatchesTheLabelTextExactly) {
  const auto speak = [this](const std::string& text) {
    window_.MainNumber()->SetText(text);
    window_.SpeakTheNumbers();
  };
  for (const char* unknown : {"0", "07", " 7", "7 ", "91", "", "seven"}) speak(unknown);
  EXPECT_TRUE(log_.opened.empty());
  EXPECT_EQ(executableLookups_, 0);

  for (const char* known : {"7", "70", "1", "90", "7"}) speak(known);
  EXPECT_EQ(log_.opened, (std::vector<std::string>{"vocal7.mp3", "vocal70.mp3", "vocal1.mp3", "vocal90.mp3"}));
  EXPECT_EQ(log_.played,
            (std::vector<std::string>{"vocal7.mp3", "vocal70.mp3", "vocal1.mp3", "vocal90.mp3", "vocal7.mp3"}));
}

TEST_F(CallerGameTest, SwitchFlipsAndKeepsItsStateThroughResetAndNewGame) {
  // Off all through a game: no clip is looked for, even with none there.
  fs::remove_all(Resources());
  PressNext(90);
  EXPECT_EQ(questions_, 1);
  EXPECT_TRUE(reports_.empty());
  EXPECT_EQ(executableLookups_, 0);
  PutAllClips();

  EXPECT_EQ(window_.PushButton1()->Caption(), "BINGO CALLER - OFF");
  PressCaller();
  EXPECT_EQ(window_.PushButton1()->Caption(), "BINGO CALLER - ON");
  EXPECT_TRUE(Module1::Bingo_Caller);
  PressCaller();
  EXPECT_EQ(window_.PushButton1()->Caption(), "BINGO CALLER - OFF");
  EXPECT_FALSE(Module1::Bingo_Caller);
  PressCaller();

  PressNext(3);
  PressReset();  // answered Yes
  EXPECT_EQ(questions_, 2);
  EXPECT_EQ(Gone(), 0);
  EXPECT_EQ(window_.PushButton1()->Caption(), "BINGO CALLER - ON");
  EXPECT_TRUE(Module1::Bingo_Caller);
  const tk::Integer firstOfNewGame = Draw().front();
  PressNext();
  EXPECT_EQ(log_.played.back(), ClipName(firstOfNewGame));
  EXPECT_EQ(log_.played.size(), 4u);
}

}  // namespace
}  // namespace voicetest
