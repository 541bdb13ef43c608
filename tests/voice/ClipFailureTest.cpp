// A clip that can't be had: why, in the operator's words, for each way of
// breaking it; and, through real presses of a real window, what a failing
// clip does to the game and to the report.
#include <QCoreApplication>

#include <chrono>
#include <fstream>

#include "tests/voice/VoiceFixture.h"
#include "toolkit/Notice.h"
#include "toolkit/Strings.h"

namespace voicetest {
namespace {

class ClipFailureTest : public VoiceTest {
 protected:
  // Breaks the clip of the first number drawn, then walks: the failing
  // press and its report (headline and advice, as the operator reads
  // them), a repair that comes too late, the same failure at the next
  // press, and the whole game with the caller off.
  void Walk(const std::function<void(tk::Integer)>& breakClip, bool lookupRaises, const std::string& headline,
            const std::string& informative) {
    realFiles_ = true;
    for (tk::Integer k = 1; k <= 90; ++k) PutClip(k);
    const tk::Integer first = Look().draw.front();
    breakClip(first);
    PressCaller();
    PressNext();
    ASSERT_EQ(failures.size(), 1u);
    const tk::FailureText told = tk::Describe(failures[0]);
    EXPECT_EQ(told.headline, headline);
    EXPECT_EQ(told.informative, informative);
    EXPECT_NE(told.details.find("NilObjectException: An object reference was nil."), std::string::npos);
    EXPECT_EQ(Module1::HowManyNumbersGone, 0);
    EXPECT_EQ(bundle_.lookups, 1);

    bundle_.executable = std::make_shared<tk::FolderItem>((bundle_.root / "bin" / "calloquin").string());
    for (tk::Integer k = 1; k <= 90; ++k) PutClip(k);
    const auto opened = opened_.size();
    PressNext();
    ASSERT_EQ(failures.size(), 2u);
    // The same clip failing again says the same, though nothing was looked
    // at again; a lookup that raised left its member nothing to tell.
    if (lookupRaises) {
      EXPECT_FALSE(failures[1].cause) << tk::OneLine(failures[1]);
    } else {
      EXPECT_EQ(tk::Describe(failures[1]).headline, told.headline);
    }
    EXPECT_EQ(Module1::HowManyNumbersGone, 0);
    EXPECT_EQ(window->MainNumber()->Text(), tk::Str(first));
    EXPECT_EQ(bundle_.lookups, 1) << "a Failed member looks for nothing again";
    EXPECT_EQ(opened_.size(), opened);

    PressCaller();
    answers.push_back(tk::kAnswerYes);
    PressNext(90);
    EXPECT_EQ(questions.size(), 1u) << "with the caller off the game runs to its end";
    EXPECT_EQ(failures.size(), 2u);
    EXPECT_TRUE(played_.empty());
  }
  void Write(const fs::path& path, const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }
};

// Each way a file fails, in the words the operator reads. Run as an
// unprivileged user too (ctest), where permissions stop a read; root reads
// anything, and is told the file is not a sound.
TEST_F(ClipFailureTest, EachWayAFileFailsIsToldInWords) {
  std::string garbage;  // no 0xFF byte, so nothing in it passes for an MP3 frame
  for (int i = 0; i < 4096; ++i) garbage.push_back(static_cast<char>((i * 37 + 11) % 251));
  PutClip(1);
  Write(ClipPath(2), "");
  Write(ClipPath(3), garbage);
  Write(ClipPath(4), "x");
  Write(bundle_.root / "file", "x");
  fs::permissions(ClipPath(4), fs::perms::none);
  const bool permissionsCount = !std::ifstream(ClipPath(4)).good();
  const std::vector<std::pair<fs::path, std::string>> table = {
      {ClipPath(1), "opened"},
      {ClipPath(2), "the file is empty"},
      {ClipPath(3), "it is not a sound that can be played"},
      {ClipPath(4), permissionsCount ? "it can't be read (Permission denied)" : "it is not a sound"},
      {ClipPath(5), "there is no such file"},
      {Resources(), "it is a folder, not a file"},
      {bundle_.root / "gone" / "vocal1.mp3", "its folder " + (bundle_.root / "gone").string() + " does not exist"},
      {bundle_.root / "file" / "vocal1.mp3", (bundle_.root / "file").string() + " is not a folder"},
  };
  for (const auto& [path, why] : table) {
    const tk::Opened<tk::Sound> sound = tk::OpenMixerSound(path.string());
    const std::string told = sound ? "opened" : sound.WhyNil() ? sound.WhyNil()->why : "nothing";
    EXPECT_EQ(told.substr(0, why.size()), why) << path;
  }
}

// (The first number of every test's first game is 1: tests/Draws.h.)
TEST_F(ClipFailureTest, MissingClip) {
  Walk([this](tk::Integer k) { fs::remove(ClipPath(k)); }, false, "The sound file vocal1.mp3 could not be opened: there is no such file.",
       "It was looked for in the folder " + Resources().string() + ".\n\nSwitch BINGO CALLER off to go on without the "
       "voice. Installing Calloquin again puts its sound files back.");
}
TEST_F(ClipFailureTest, ExecutableUnknown) {
  Walk([this](tk::Integer) { bundle_.executable = nullptr; }, true,
       "Calloquin could not find its own program file: the system did not say where it is.",
       "Start Calloquin from where it is installed.");
}
TEST_F(ClipFailureTest, ExecutableAtTheRoot) {  // "/" has no parent
  Walk([this](tk::Integer) { bundle_.executable = std::make_shared<tk::FolderItem>("/calloquin"); }, true,
       "The folder above / could not be found: / is the top folder.",
       "Calloquin expects its program in a folder \"bin\" beside its folder \"Resources\"; installing it again "
       "puts them back in place.");
}

// Without the sound library no clip counts as opened: a voice that is
// silently missing would leave the operator calling a game nobody hears.
TEST_F(ClipFailureTest, NoSoundLibrary) {
  tk::SetSoundLibrary("SDL2", "libcalloquin-no-such-sdl.so.0");
  PutClip(1);
  const tk::Opened<tk::Sound> sound = tk::OpenMixerSound(ClipPath(1).string());
  ASSERT_TRUE(sound.WhyNil());
  EXPECT_EQ(sound.WhyNil()->why, "the sound library SDL2 is not installed");
  EXPECT_EQ(sound.WhyNil()->folder, "") << "the library is not looked for in the clip's folder";
  EXPECT_EQ(sound.WhyNil()->advice, "Install SDL2 (on Debian and Ubuntu the package libsdl2-2.0-0) and "
            "start Calloquin again, or switch BINGO CALLER off to go on without the voice.");
}

// No output: every press still calls and counts its number, and the
// operator is told once on screen, when the output is looked at after a
// play.
TEST_F(ClipFailureTest, NoSoundOutputIsToldOnceAndTheGameGoesOn) {
  setenv("SDL_AUDIODRIVER", "calloquin-no-such-device", 1);
  tk::SetOutputCheckDelay(std::chrono::milliseconds(0));
  std::vector<std::string> notices;
  const tk::ScopedHook shower(tk::SetNoticeShower, [&](const tk::String& text, const tk::String& more) {
    notices.push_back(text + " " + more);
  });
  realFiles_ = true;
  for (tk::Integer k = 1; k <= 90; ++k) PutClip(k);
  PressCaller();
  for (int press = 0; press < 3; ++press) {
    PressNext();
    QCoreApplication::processEvents();  // the look after the play
  }
  EXPECT_EQ(notices, std::vector<std::string>{"The caller's voice can't be heard: the computer's sound isn't playing. "
      "The game goes on without sound. The voice comes back by itself once the desktop's sound is running and "
      "speakers or headphones are connected."});
  EXPECT_TRUE(failures.empty());
  EXPECT_EQ(Module1::HowManyNumbersGone, 3);
  EXPECT_EQ(played_.size(), 3u);
}

}  // namespace
}  // namespace voicetest
