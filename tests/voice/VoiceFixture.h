#pragma once
// A real Window1 whose executable seems to lie in a temporary bundle, so
// each test lays out (and breaks) its own Resources folder. Also: a record
// of every clip opened and played, a recording failure reporter, and a
// dialog answered Yes.
//
// The 90 clip members keep their state for the life of the process and
// can't be reset, so every test of this fixture needs a process of its own.
// CTest gives it one (each test is registered alone and run with its own
// --gtest_filter); run directly, the program runs the first such test and
// skips the rest.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "toolkit/Dispatch.h"
#include "toolkit/FolderItem.h"
#include "toolkit/MsgBox.h"
#include "toolkit/Sound.h"
#include "window/Window1.h"

namespace voicetest {

namespace fs = std::filesystem;

// Fixture clips made at build time: 1.5 s tones at 440 Hz and 1000 Hz.
fs::path Tone440();
fs::path Tone1000();

// What went to the sound opener and to Play, by file name, in order.
struct SoundLog {
  std::vector<std::string> opened;
  std::vector<std::string> played;
  std::vector<std::string> openedPaths;
};

// The clip function of a number, for calling a member directly.
std::shared_ptr<tk::Sound> Vocal(tk::Integer number);
std::string ClipName(tk::Integer number);  // "vocal7.mp3"

class VoiceTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // Opens sounds through the mixer (which judges the files) instead of
  // accepting any name. Call before the first press.
  void UseRealFiles() { realFiles_ = true; }

  fs::path Bundle() const { return root_; }
  fs::path Resources() const { return root_ / "Resources"; }
  fs::path ClipPath(tk::Integer number) const { return Resources() / ClipName(number); }
  void PutClip(tk::Integer number, const fs::path& fixture);
  void PutAllClips();  // the 440 Hz tone for every number

  // The numbers of the current game in calling order.
  std::vector<tk::Integer> Draw() const;
  std::vector<std::string> ClipNames(const std::vector<tk::Integer>& numbers, std::size_t from = 0,
                                     std::size_t to = 90) const;
  tk::Integer Gone() const;
  void PressNext(int times = 1);
  void PressCaller() { window_.PushButton1()->Push(); }
  void PressReset() { window_.PushButton3()->Push(); }

  Window1 window_;
  SoundLog log_;
  std::vector<std::string> reports_;  // class names of reported failures
  int questions_ = 0;                 // dialogs shown, each answered Yes
  int executableLookups_ = 0;         // calls of Application.ExecutableFile
  std::shared_ptr<tk::FolderItem> executable_;  // what that call returns

 private:
  fs::path root_;
  bool realFiles_ = false;
  tk::SoundOpener oldOpener_;
  tk::ExecutableFileSource oldSource_;
  tk::FailureReporter oldReporter_;
  tk::MsgBoxAnswerer oldAnswerer_;
};

}  // namespace voicetest
