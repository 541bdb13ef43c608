#pragma once
// The game's window (tests/game) whose executable seems to lie in a
// temporary bundle of the test's own, with the clips opened and played
// recorded.
//
// The 90 clip members keep their state for the whole process and can't be
// reset, so each test of this fixture needs a process of its own. CTest
// gives it one (every test is registered alone, run with its own
// --gtest_filter); run directly, the program runs the first and skips the rest.
#include <cstdlib>

#include "engine/Module1.h"
#include "tests/TempBundle.h"
#include "tests/game/GameFixture.h"

namespace voicetest {

// 1.5 s tones made at build time; a run as another user is handed a copy.
inline fs::path Tone(int hz) {
  const char* moved = std::getenv("CALLOQUIN_VOICE_FIXTURES");
  return fs::path(moved != nullptr ? moved : CALLOQUIN_VOICE_FIXTURES) / ("tone" + std::to_string(hz) + ".mp3");
}
inline std::string ClipName(tk::Integer k) { return "vocal" + std::to_string(k) + ".mp3"; }

// Records Play, then passes it on to the mixer's clip when there is one.
struct RecordingSound : tk::Sound {
  void Play() override {
    played();
    if (real) real->Play();
  }
  std::function<void()> played;
  std::shared_ptr<tk::Sound> real;
};

class VoiceTest : public testgame::GameTest {
 protected:
  void SetUp() override {
    static bool processUsed = false;
    if (std::exchange(processUsed, true)) GTEST_SKIP() << "needs fresh clip members: run it alone (ctest does)";
    Open();
    bundle_.lookups = 0;  // the backdrop's, while the window was built; the clips' are counted
  }

  fs::path Resources() const { return bundle_.resources; }
  fs::path ClipPath(tk::Integer k) const { return Resources() / ClipName(k); }
  void PutClip(tk::Integer k, int hz = 440) {
    fs::create_directories(Resources());
    fs::remove(ClipPath(k));  // a locked file can't be written over, but it can go
    fs::copy_file(Tone(hz), ClipPath(k));
  }
  void PressNext(int times = 1) {
    while (times-- > 0) Press();
  }
  void PressCaller() { window->PushButton1()->Push(); }
  TempBundle bundle_;
  bool realFiles_ = false;
  std::vector<std::string> opened_, played_;
  std::vector<testgame::Snapshot> shownAtPlay_;  // what the window showed as each clip started

 private:
  tk::Opened<tk::Sound> OpenClip(const tk::String& path) {
    opened_.push_back(fs::path(path).filename().string());
    tk::Opened<tk::Sound> real;
    if (realFiles_ && !(real = tk::OpenMixerSound(path))) return real;  // the mixer judges the file
    auto sound = std::make_shared<RecordingSound>();
    sound->played = [this, name = opened_.back()] { played_.push_back(name), shownAtPlay_.push_back(Look()); };
    sound->real = real;
    return sound;
  }
  tk::ScopedHook<tk::SoundOpener> opener_{tk::SetSoundOpener, [this](const tk::String& path) { return OpenClip(path); }};
};

}  // namespace voicetest
