// The caller over whole games: which clips are opened and played, and when.
#include "tests/voice/VoiceFixture.h"

namespace voicetest {
namespace {

using CallerGameTest = VoiceTest;

TEST_F(CallerGameTest, ChainMatchesTheLabelTextExactly) {
  for (const char* text : {"0", "07", " 7", "91", "", "7", "70", "1", "90", "7"}) {
    window->MainNumber()->SetText(text);
    window->SpeakTheNumbers();
  }
  EXPECT_EQ(opened_, (std::vector<std::string>{"vocal7.mp3", "vocal70.mp3", "vocal1.mp3", "vocal90.mp3"}));
  EXPECT_EQ(played_, (std::vector<std::string>{"vocal7.mp3", "vocal70.mp3", "vocal1.mp3", "vocal90.mp3", "vocal7.mp3"}));
}

TEST_F(CallerGameTest, SwitchFlipsAndKeepsItsStateThroughResetAndNewGame) {
  answers.assign({tk::kAnswerYes, tk::kAnswerYes});  // the end question, then RESET
  PressNext(90);
  EXPECT_EQ(bundle_.lookups, 0) << "off all game: no clip looked for";
  using State = std::pair<std::string, bool>;
  const auto state = [this] { return State(window->PushButton1()->Caption(), Module1::Bingo_Caller); };
  EXPECT_EQ(state(), (State{"BINGO CALLER - OFF", false}));
  PressCaller();
  EXPECT_EQ(state(), (State{"BINGO CALLER - ON", true}));
  PressCaller();
  PressCaller();
  PressNext(3);
  window->PushButton3()->Push();  // RESET, answered Yes
  EXPECT_EQ(questions.size(), 2u);
  EXPECT_EQ(state(), (State{"BINGO CALLER - ON", true}));
  // The voice comes last in a press, but for the count: as each clip starts
  // the number, the count, the flash, its cell, the three before it and
  // the call all stand as the press leaves them.
  for (std::size_t press = 1; press <= 6; ++press) {
    PressNext();
    ASSERT_EQ(played_.size(), 3 + press);
    EXPECT_EQ(played_.back(), ClipName(Look().draw[press - 1]));
    testgame::Snapshot after = Look();
    --after.howMany;
    EXPECT_EQ(shownAtPlay_.back(), after) << "press " << press;
  }
}

}  // namespace
}  // namespace voicetest
