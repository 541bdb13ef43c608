// A clip that can't be had, for each way of breaking it, through real
// presses of a real window.
#include <fstream>

#include "tests/voice/VoiceFixture.h"
#include "toolkit/Strings.h"

namespace voicetest {
namespace {

class ClipFailureTest : public VoiceTest {
 protected:
  // Breaks the clips of the first and last numbers drawn, then walks: a
  // direct first call of the last one's member (raising or nil), the
  // failing press, a repair that comes too late, the same failure at the
  // next press, and the whole game with the caller off.
  void Run(const std::function<void(tk::Integer)>& breakClip, bool firstCallRaises) {
    realFiles_ = true;
    for (tk::Integer k = 1; k <= 90; ++k) PutClip(k);
    const tk::Integer first = Draw().front(), last = Draw().back();
    breakClip(first), breakClip(last);
    if (firstCallRaises) {
      EXPECT_THROW(Vocal(last), tk::NilObjectException);
    } else {
      EXPECT_EQ(Vocal(last), nullptr);
    }
    PressCaller();
    PressNext();
    EXPECT_EQ(reports_, std::vector<std::string>{"NilObjectException"});
    EXPECT_EQ(Module1::HowManyNumbersGone, 0);
    EXPECT_EQ(lookups_, 2);

    executable_ = std::make_shared<tk::FolderItem>((root_ / "bin" / "calloquin").string());
    for (tk::Integer k = 1; k <= 90; ++k) PutClip(k);
    const auto opened = opened_.size();
    EXPECT_EQ(Vocal(first), nullptr);  // Failed for good, without raising
    PressNext();
    EXPECT_EQ(reports_.size(), 2u);
    EXPECT_EQ(Module1::HowManyNumbersGone, 0);
    EXPECT_EQ(window_.MainNumber()->Text(), tk::Str(first));
    EXPECT_EQ(lookups_, 2) << "a Failed member looks for nothing again";
    EXPECT_EQ(opened_.size(), opened);

    PressCaller();
    PressNext(90);
    EXPECT_EQ(questions_, 1) << "with the caller off the game runs to its end";
    EXPECT_EQ(reports_.size(), 2u);
    EXPECT_TRUE(played_.empty());
  }
  void Write(tk::Integer k, const std::string& bytes) { std::ofstream(ClipPath(k), std::ios::binary) << bytes; }
};

// The folder's item still comes back; it is the file's that is nil.
TEST_F(ClipFailureTest, NoResourcesFolder) { Run([this](tk::Integer) { fs::remove_all(Resources()); }, true); }
TEST_F(ClipFailureTest, MissingClip) { Run([this](tk::Integer k) { fs::remove(ClipPath(k)); }, false); }
TEST_F(ClipFailureTest, EmptyFile) { Run([this](tk::Integer k) { Write(k, ""); }, false); }
TEST_F(ClipFailureTest, GarbageBytes) {
  std::string garbage;  // no 0xFF byte, so nothing in it passes for an MP3 frame
  for (int i = 0; i < 4096; ++i) garbage.push_back(static_cast<char>((i * 37 + 11) % 251));
  Run([&](tk::Integer k) { Write(k, garbage); }, false);
}
TEST_F(ClipFailureTest, UnreadableFile) {
  Write(1, "x");
  fs::permissions(ClipPath(1), fs::perms::none);
  if (std::ifstream(ClipPath(1)).good()) GTEST_SKIP() << "permissions don't stop this user (root)";
  Run([this](tk::Integer k) { fs::permissions(ClipPath(k), fs::perms::none); }, false);
}
TEST_F(ClipFailureTest, ExecutableUnknown) { Run([this](tk::Integer) { executable_ = nullptr; }, true); }
TEST_F(ClipFailureTest, ExecutableAtTheRoot) {  // "/" has no parent
  Run([this](tk::Integer) { executable_ = std::make_shared<tk::FolderItem>("/calloquin"); }, true);
}
TEST_F(ClipFailureTest, BundleIsNoFolder) {  // the lookup answers nil, the link raises
  std::ofstream(root_ / "file") << "x";
  Run([this](tk::Integer) { executable_ = std::make_shared<tk::FolderItem>((root_ / "file/bin/calloquin").string()); },
      false);
}

}  // namespace
}  // namespace voicetest
