// The caller played for a long time in one process, with every clip present
// and really decoded: games with random RESETs (answered Yes and No) and
// switches of the caller: no failure, the end question only over the 90th
// number, each clip opened once, and the peak memory flat once the clips are
// all open. What each press shows is the whole-game test's (tests/game).
// CALLOQUIN_SOAK_GAMES sets the length (200 games unless told).
#include <cstdlib>
#include <fstream>
#include <random>

#include "tests/voice/VoiceFixture.h"

namespace voicetest {
namespace {

// Memory the process holds, in kB: under the sanitizer, which keeps freed
// memory back on purpose, what is allocated; else the peak resident size.
extern "C" [[gnu::weak]] std::size_t __sanitizer_get_current_allocated_bytes();
long HeldKb() {
  if (__sanitizer_get_current_allocated_bytes != nullptr) return long(__sanitizer_get_current_allocated_bytes() / 1024);
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line) && line.rfind("VmHWM:", 0) != 0) {
  }
  return line.empty() ? -1 : std::stol(line.substr(6));
}

using SoakTest = VoiceTest;

TEST_F(SoakTest, GamesWithResetsAndTheCallerFailNothingAndKeepMemoryFlat) {
  const char* env = std::getenv("CALLOQUIN_SOAK_GAMES");
  const long games = env != nullptr ? std::atol(env) : 200;
  for (tk::Integer k = 1; k <= 90; ++k) PutClip(k, k % 2 ? 440 : 1000);
  // The mixer's own clips: the fixture's record of every play would grow.
  const tk::ScopedHook opener(tk::SetSoundOpener, [this](const tk::String& path) {
    opened_.push_back(path);
    return tk::OpenMixerSound(path);
  });

  std::mt19937 rng(20240611);  // the driver's choices; the draws are the tests' own (tests/Draws.h)
  bool resetAnswer = false;
  int endQuestions = 0;
  const tk::ScopedHook answerer(tk::SetMsgBoxAnswerer, [&](const tk::String& text, tk::Integer, const tk::String&) {
    if (text.rfind("RESET", 0) == 0) return resetAnswer ? tk::kAnswerYes : tk::kAnswerNo;
    EXPECT_EQ(Module1::HowManyNumbersGone, 90);
    ++endQuestions;
    return tk::kAnswerYes;
  });
  long baseline = 0;
  for (long press = 1; press <= games * 90; ++press) {
    const auto roll = rng() % 1000;
    if (roll < 20) PressCaller();
    if (roll >= 20 && roll < 30) {
      resetAnswer = roll % 2 == 0;
      window->PushButton3()->Push();
    }
    PressNext();
    if (press == 100 * 90) baseline = HeldKb();
  }
  EXPECT_TRUE(failures.empty()) << failures.size() << " failures, the first " << tk::OneLine(failures.front());
  EXPECT_GT(endQuestions, games / 2);
  EXPECT_EQ(opened_.size(), 90u) << "each clip is opened once, however many games";
  if (games > 100) {
    EXPECT_LE(HeldKb() - baseline, 2048) << "memory grew after game 100";
  }
}

}  // namespace
}  // namespace voicetest
