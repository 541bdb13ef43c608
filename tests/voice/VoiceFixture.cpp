#include "tests/voice/VoiceFixture.h"

#include <cstdlib>

#include "caller/VoiceClips.h"
#include "engine/Module1.h"

namespace voicetest {
namespace {

// Records Play, then passes it on to the real clip when there is one.
class RecordingSound : public tk::Sound {
 public:
  RecordingSound(std::string name, SoundLog& log, std::shared_ptr<tk::Sound> real)
      : name_(std::move(name)), log_(log), real_(std::move(real)) {}
  void Play() override {
    log_.played.push_back(name_);
    if (real_) real_->Play();
  }

 private:
  std::string name_;
  SoundLog& log_;
  std::shared_ptr<tk::Sound> real_;
};

bool gProcessUsed = false;

}  // namespace

fs::path Tone440() { return fs::path(CALLOQUIN_VOICE_FIXTURES) / "tone440.mp3"; }
fs::path Tone1000() { return fs::path(CALLOQUIN_VOICE_FIXTURES) / "tone1000.mp3"; }

std::shared_ptr<tk::Sound> Vocal(tk::Integer number) {
#define CALLOQUIN_VOCAL_ENTRY(k) &caller::vocal##k,
  static std::shared_ptr<tk::Sound> (*const table[])() = {CALLOQUIN_FOR_EACH_NUMBER(CALLOQUIN_VOCAL_ENTRY)};
#undef CALLOQUIN_VOCAL_ENTRY
  return table[number - 1]();
}

std::string ClipName(tk::Integer number) { return "vocal" + std::to_string(number) + ".mp3"; }

void VoiceTest::SetUp() {
  if (gProcessUsed) GTEST_SKIP() << "needs fresh clip members: run it alone (ctest does)";
  gProcessUsed = true;

  std::string pattern = (fs::temp_directory_path() / "calloquin-voice-XXXXXX").string();
  ASSERT_NE(mkdtemp(pattern.data()), nullptr);
  root_ = pattern;
  fs::create_directories(root_ / "bin");
  fs::create_directories(Resources());
  executable_ = std::make_shared<tk::FolderItem>((root_ / "bin" / "calloquin").string());

  oldSource_ = tk::SetExecutableFileSource([this] {
    ++executableLookups_;
    return executable_;
  });
  oldOpener_ = tk::SetSoundOpener([this](const tk::String& path) -> std::shared_ptr<tk::Sound> {
    const std::string name = fs::path(path).filename().string();
    log_.opened.push_back(name);
    log_.openedPaths.push_back(path);
    if (!realFiles_) return std::make_shared<RecordingSound>(name, log_, nullptr);
    auto real = tk::OpenMixerSound(path);
    if (!real) return nullptr;
    return std::make_shared<RecordingSound>(name, log_, std::move(real));
  });
  oldReporter_ = tk::SetFailureReporter([this](const tk::FailureReport& r) { reports_.push_back(r.className); });
  oldAnswerer_ = tk::SetMsgBoxAnswerer([this](const tk::String&, tk::Integer, const tk::String&) {
    ++questions_;
    return tk::kAnswerYes;
  });
  window_.Constructor();
}

void VoiceTest::TearDown() {
  if (root_.empty()) return;  // skipped
  tk::SetMsgBoxAnswerer(oldAnswerer_);
  tk::SetFailureReporter(oldReporter_);
  tk::SetSoundOpener(oldOpener_);
  tk::SetExecutableFileSource(oldSource_);
  std::error_code ignored;
  fs::permissions(root_, fs::perms::owner_all, fs::perm_options::add, ignored);
  for (const auto& entry : fs::recursive_directory_iterator(root_, ignored))
    fs::permissions(entry.path(), fs::perms::owner_all, fs::perm_options::add, ignored);
  fs::remove_all(root_, ignored);
}

void VoiceTest::PutClip(tk::Integer number, const fs::path& fixture) {
  fs::create_directories(Resources());
  fs::remove(ClipPath(number));  // a locked file can't be written over, but it can go
  fs::copy_file(fixture, ClipPath(number));
}

void VoiceTest::PutAllClips() {
  for (tk::Integer k = 1; k <= 90; ++k) PutClip(k, Tone440());
}

std::vector<tk::Integer> VoiceTest::Draw() const {
  std::vector<tk::Integer> numbers;
  for (tk::Integer i = 0; i < 90; ++i) numbers.push_back(Module1::bingonumbers(i));
  return numbers;
}

std::vector<std::string> VoiceTest::ClipNames(const std::vector<tk::Integer>& numbers, std::size_t from,
                                              std::size_t to) const {
  std::vector<std::string> names;
  for (std::size_t i = from; i < to; ++i) names.push_back(ClipName(numbers[i]));
  return names;
}

tk::Integer VoiceTest::Gone() const { return Module1::HowManyNumbersGone; }

void VoiceTest::PressNext(int times) {
  for (int i = 0; i < times; ++i) window_.PushButton2()->Push();
}

}  // namespace voicetest
