// A clip that can't be had, row by row: each way of breaking it, in a bundle
// of the test's own, through real presses of a real window.
#include <fstream>
#include <functional>

#include "engine/Module1.h"
#include "tests/voice/VoiceFixture.h"
#include "toolkit/Exceptions.h"
#include "toolkit/Strings.h"

namespace voicetest {
namespace {

class ClipFailureTest : public VoiceTest {
 protected:
  // Breaks the clips of the first and the last number drawn with `breakClip`,
  // then walks: the failing press, the member that stays Failed even once
  // the fault is repaired, the same failure at the next press, and the
  // whole game with the caller off. The last number's member is called
  // directly first, to see whether a failed first call raises or returns nil.
  void ExpectFailureHoldsTheGame(const std::function<void(tk::Integer)>& breakClip, bool firstCallRaises) {
    UseRealFiles();
    PutAllClips();
    const std::vector<tk::Integer> draw = Draw();
    const tk::Integer first = draw.front(), last = draw.back();
    breakClip(first);
    breakClip(last);

    if (firstCallRaises) {
      EXPECT_THROW(Vocal(last), tk::NilObjectException);
    } else {
      EXPECT_EQ(Vocal(last), nullptr);
    }
    const int lookupsBefore = executableLookups_;

    PressCaller();
    PressNext();
    ASSERT_EQ(reports_, std::vector<std::string>{"NilObjectException"});
    EXPECT_EQ(Gone(), 0) << "the failing number must not count as gone";
    EXPECT_EQ(window_.MainNumber()->Text(), tk::Str(first));
    EXPECT_EQ(executableLookups_, lookupsBefore + 1);

    // Put everything right: the members have already settled.
    Repair();
    const int lookups = executableLookups_;
    const std::size_t opened = log_.opened.size();
    EXPECT_EQ(Vocal(first), nullptr);
    EXPECT_EQ(Vocal(last), nullptr);

    PressNext();
    EXPECT_EQ(reports_, (std::vector<std::string>{"NilObjectException", "NilObjectException"}));
    EXPECT_EQ(Gone(), 0);
    EXPECT_EQ(window_.MainNumber()->Text(), tk::Str(first));
    EXPECT_EQ(executableLookups_, lookups) << "a Failed member must not look for its file again";
    EXPECT_EQ(log_.opened.size(), opened);
    EXPECT_TRUE(log_.played.empty());

    // With the caller off the game runs to its end and asks about the next.
    PressCaller();
    PressNext(90);
    EXPECT_EQ(questions_, 1);
    EXPECT_EQ(reports_.size(), 2u);
    EXPECT_EQ(Gone(), 0) << "Yes starts a new game";
    EXPECT_EQ(log_.opened.size(), opened);
  }

  // A good bundle again, executable and all.
  void Repair() {
    executable_ = std::make_shared<tk::FolderItem>((Bundle() / "bin" / "calloquin").string());
    PutAllClips();
  }

  void Write(tk::Integer number, const std::string& bytes) {
    std::ofstream(ClipPath(number), std::ios::binary | std::ios::trunc) << bytes;
  }
};

TEST_F(ClipFailureTest, NoResourcesFolder) {
  // The folder's item still comes back; it is the file's Child that is nil.
  ExpectFailureHoldsTheGame([this](tk::Integer) { fs::remove_all(Resources()); }, true);
}

TEST_F(ClipFailureTest, MissingClipLeavesTheOthersAlone) {
  ExpectFailureHoldsTheGame([this](tk::Integer k) { fs::remove(ClipPath(k)); }, false);
  // The game above ran with the caller off; the next game speaks normally
  // until it reaches the failed number.
  const std::vector<tk::Integer> draw = Draw();
  const std::size_t opened = log_.opened.size();
  PressCaller();
  std::size_t spoken = 0;
  while (reports_.size() == 2u) {
    PressNext();
    if (reports_.size() == 2u) ++spoken;
  }
  EXPECT_EQ(log_.played, ClipNames(draw, 0, spoken));
  EXPECT_EQ(log_.opened.size(), opened + spoken);
  EXPECT_EQ(Gone(), static_cast<tk::Integer>(spoken));
}

TEST_F(ClipFailureTest, EmptyFile) {
  ExpectFailureHoldsTheGame([this](tk::Integer k) { Write(k, ""); }, false);
}

TEST_F(ClipFailureTest, GarbageBytes) {
  // No 0xFF byte, so nothing in it can pass for an MP3 frame header.
  std::string garbage;
  for (int i = 0; i < 4096; ++i) garbage.push_back(static_cast<char>((i * 37 + 11) % 251));
  ExpectFailureHoldsTheGame([&](tk::Integer k) { Write(k, garbage); }, false);
}

TEST_F(ClipFailureTest, UnreadableFile) {
  const auto lock = [this](tk::Integer k) { fs::permissions(ClipPath(k), fs::perms::none); };
  PutClip(1, Tone440());
  lock(1);
  if (std::ifstream(ClipPath(1)).good()) GTEST_SKIP() << "permissions don't stop this user (root)";
  ExpectFailureHoldsTheGame(lock, false);
}

TEST_F(ClipFailureTest, ExecutableUnknown) {
  ExpectFailureHoldsTheGame([this](tk::Integer) { executable_ = nullptr; }, true);
}

TEST_F(ClipFailureTest, ExecutableAtTheRoot) {
  // "/" has no parent, so the second step up fails.
  ExpectFailureHoldsTheGame([this](tk::Integer) { executable_ = std::make_shared<tk::FolderItem>("/calloquin"); },
                            true);
}

TEST_F(ClipFailureTest, BundleIsNoFolder) {
  // The lookup itself answers nil; the member passes that on quietly and
  // the link turns it into the failure.
  std::ofstream(Bundle() / "plain-file") << "x";
  ExpectFailureHoldsTheGame(
      [this](tk::Integer) {
        executable_ = std::make_shared<tk::FolderItem>((Bundle() / "plain-file" / "bin" / "calloquin").string());
      },
      false);
}

}  // namespace
}  // namespace voicetest
