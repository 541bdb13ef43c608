#pragma once
// A real Window1 whose executable seems to lie in a temporary bundle of the
// test's own, with the clips opened and played recorded, failures recorded
// instead of shown, and every dialog answered Yes.
//
// The 90 clip members keep their state for the whole process and can't be
// reset, so each test of this fixture needs a process of its own. CTest
// gives it one (every test is registered alone, run with its own
// --gtest_filter); run directly, the program runs the first and skips the rest.
#include <cstdlib>

#include "caller/VoiceClips.h"
#include "engine/Module1.h"
#include "tests/TempBundle.h"
#include "toolkit/Dispatch.h"
#include "toolkit/MsgBox.h"
#include "toolkit/Strings.h"
#include "window/Window1.h"

namespace voicetest {

// 1.5 s tones made at build time; a run as another user is handed a copy.
inline fs::path Tone(int hz) {
  const char* moved = std::getenv("CALLOQUIN_VOICE_FIXTURES");
  return fs::path(moved != nullptr ? moved : CALLOQUIN_VOICE_FIXTURES) / ("tone" + std::to_string(hz) + ".mp3");
}
inline std::string ClipName(tk::Integer k) { return "vocal" + std::to_string(k) + ".mp3"; }

// Member k's function, for calling it directly.
inline std::shared_ptr<tk::Sound> Vocal(tk::Integer k) {
#define CALLOQUIN_VOCAL_ENTRY(k) &caller::vocal##k,
  static const tk::Opened<tk::Sound>& (*const table[])() = {CALLOQUIN_FOR_EACH_NUMBER(CALLOQUIN_VOCAL_ENTRY)};
#undef CALLOQUIN_VOCAL_ENTRY
  return table[k - 1]();
}

// Records Play, then passes it on to the mixer's clip when there is one.
struct RecordingSound : tk::Sound {
  RecordingSound(std::string name, std::function<void(const std::string&)> played, std::shared_ptr<tk::Sound> real)
      : name(std::move(name)), played(std::move(played)), real(std::move(real)) {}
  void Play() override {
    played(name);
    if (real) real->Play();
  }
  std::string name;
  std::function<void(const std::string&)> played;
  std::shared_ptr<tk::Sound> real;
};

class VoiceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    static bool processUsed = false;
    if (std::exchange(processUsed, true)) GTEST_SKIP() << "needs fresh clip members: run it alone (ctest does)";
    window_.Constructor();
    bundle_.lookups = 0;  // the backdrop's, while the window was built; the clips' are counted
  }

  fs::path Resources() const { return bundle_.resources; }
  fs::path ClipPath(tk::Integer k) const { return Resources() / ClipName(k); }
  void PutClip(tk::Integer k, int hz = 440) {
    fs::create_directories(Resources());
    fs::remove(ClipPath(k));  // a locked file can't be written over, but it can go
    fs::copy_file(Tone(hz), ClipPath(k));
  }
  std::vector<tk::Integer> Draw() const {
    std::vector<tk::Integer> d;
    for (tk::Integer i = 0; i < 90; ++i) d.push_back(Module1::bingonumbers(i));
    return d;
  }
  void PressNext(int times = 1) {
    while (times-- > 0) window_.PushButton2()->Push();
  }
  void PressCaller() { window_.PushButton1()->Push(); }
  // What the window shows, and the count of numbers gone less `ahead`.
  std::string Shown(tk::Integer ahead = 0) {
    Window1& w = window_;
    const tk::Integer number = static_cast<tk::Integer>(tk::Val(w.MainNumber()->Text()));
    return w.MainNumber()->Text() + "|" + w.NumbersGone()->Text() + "|" + w.LastNumber()->Text() + "|" +
           w.LastNumber1()->Text() + "|" + w.LastNumber2()->Text() + "|" + w.Label3()->Text() + "|" +
           std::to_string(w.MainNumber()->TextColor()) + "|" + std::to_string(w.Timer1()->IsRunning()) + "|" +
           std::to_string(number > 0 ? w.n1(number - 1)->TextColor() : 0) + "|" +
           std::to_string(Module1::HowManyNumbersGone - ahead);
  }

  TempBundle bundle_;
  Window1 window_;
  bool realFiles_ = false;
  std::vector<std::string> opened_, played_;
  std::vector<std::string> shownAtPlay_;  // what the window showed as each clip started
  std::vector<tk::FailureReport> reports_;
  int questions_ = 0;

 private:
  tk::Opened<tk::Sound> Open(const tk::String& path) {
    opened_.push_back(fs::path(path).filename().string());
    tk::Opened<tk::Sound> real;
    if (realFiles_ && !(real = tk::OpenMixerSound(path))) return real;  // the mixer judges the file
    return std::make_shared<RecordingSound>(opened_.back(), [this](const std::string& name) {
      played_.push_back(name);
      shownAtPlay_.push_back(Shown());
    }, real);
  }
  tk::ScopedHook<tk::SoundOpener> opener_{tk::SetSoundOpener, [this](const tk::String& path) { return Open(path); }};
  tk::ScopedHook<tk::FailureReporter> reporter_{tk::SetFailureReporter,
                                                [this](const tk::FailureReport& r) { reports_.push_back(r); }};
  tk::ScopedHook<tk::MsgBoxAnswerer> answerer_{
      tk::SetMsgBoxAnswerer, [this](const tk::String&, tk::Integer, const tk::String&) { return ++questions_, tk::kAnswerYes; }};
};

}  // namespace voicetest
