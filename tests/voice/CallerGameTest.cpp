// The caller over whole games: which clips are opened and played, and when.
#include "tests/voice/VoiceFixture.h"

namespace voicetest {
namespace {

using CallerGameTest = VoiceTest;

TEST_F(CallerGameTest, ChainMatchesTheLabelTextExactly) {
  for (const char* text : {"0", "07", " 7", "91", "", "7", "70", "1", "90", "7"}) {
    window_.MainNumber()->SetText(text);
    window_.SpeakTheNumbers();
  }
  EXPECT_EQ(opened_, (std::vector<std::string>{"vocal7.mp3", "vocal70.mp3", "vocal1.mp3", "vocal90.mp3"}));
  EXPECT_EQ(played_, (std::vector<std::string>{"vocal7.mp3", "vocal70.mp3", "vocal1.mp3", "vocal90.mp3", "vocal7.mp3"}));
}

TEST_F(CallerGameTest, SwitchFlipsAndKeepsItsStateThroughResetAndNewGame) {
  PressNext(90);
  EXPECT_EQ(bundle_.lookups, 0) << "off all game: no clip looked for";
  using State = std::pair<std::string, bool>;
  const auto state = [this] { return State(window_.PushButton1()->Caption(), Module1::Bingo_Caller); };
  EXPECT_EQ(state(), (State{"BINGO CALLER - OFF", false}));
  PressCaller();
  EXPECT_EQ(state(), (State{"BINGO CALLER - ON", true}));
  PressCaller();
  PressCaller();
  PressNext(3);
  window_.PushButton3()->Push();  // RESET, answered Yes
  EXPECT_EQ(questions_, 2);
  EXPECT_EQ(state(), (State{"BINGO CALLER - ON", true}));
  // The voice comes last in a press, but for the count: as each clip starts
  // the number, the count, the flash, its cell, the three before it and
  // the call all stand as the press leaves them.
  for (std::size_t press = 1; press <= 6; ++press) {
    PressNext();
    ASSERT_EQ(played_.size(), 3 + press);
    EXPECT_EQ(played_.back(), ClipName(Draw()[press - 1]));
    EXPECT_EQ(shownAtPlay_.back(), Shown(1)) << "press " << press;
  }
}

}  // namespace
}  // namespace voicetest
