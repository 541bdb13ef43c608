// The backdrop's loader and the picture behind it, in a temporary bundle,
// and the lookup of the resources. The loader keeps its state for the
// process, so each test needs a process of its own (CTest gives one).
#include <QImage>
#include <QPixmap>
#include <fstream>

#include "shell/BingoOuter1.h"
#include "shell/BundleResources.h"
#include "tests/TempBundle.h"
#include "toolkit/Picture.h"

namespace {

class BackdropTest : public ::testing::Test {
 protected:
  fs::path Picture() const { return bundle_.resources / "BingoOuter1.png"; }
  void PutRealPicture() { fs::copy_file(fs::path(CALLOQUIN_BUNDLE_DIR) / "Resources" / "BingoOuter1.png", Picture()); }
  void PutBytes(const std::string& bytes) { std::ofstream(Picture(), std::ios::binary) << bytes; }

  TempBundle bundle_;
};

TEST_F(BackdropTest, AMissingPictureIsTriedAgainAndAnOpenOneIsKept) {
  EXPECT_EQ(shell::BingoOuter1(), nullptr);
  PutRealPicture();
  const auto first = shell::BingoOuter1();
  ASSERT_NE(first, nullptr) << "a nil is tried again at the next call";
  EXPECT_EQ(first->Width(), 1036);
  EXPECT_EQ(first->Height(), 572);
  EXPECT_EQ(first->Pixmap().toImage(), QImage(QString::fromStdString(Picture().string()))) << "not the pixels Qt reads";
  fs::remove(Picture());
  EXPECT_EQ(shell::BingoOuter1(), first) << "an open picture is kept for the run";
}

TEST_F(BackdropTest, WhatIsNoPictureGivesNilAndABrokenBodyDrawsNothing) {
  PutBytes("");
  EXPECT_EQ(shell::BingoOuter1(), nullptr);
  PutBytes(std::string(4096, '\x5a'));
  EXPECT_EQ(shell::BingoOuter1(), nullptr);
  // A sound PNG head with nothing after it: the size is known from the
  // head, the pixels never come, and the window gets an empty pixmap.
  std::ifstream real(fs::path(CALLOQUIN_BUNDLE_DIR) / "Resources" / "BingoOuter1.png", std::ios::binary);
  std::string head(33, '\0');
  real.read(head.data(), 33);
  PutBytes(head);
  const auto broken = shell::BingoOuter1();
  ASSERT_NE(broken, nullptr);
  EXPECT_EQ(broken->Width(), 1036);
  EXPECT_TRUE(broken->Pixmap().isNull());
}

// The resource lookup on the real executable, with no seam in between.
TEST(BundleResourcesTest, ResourcesAreTheSiblingOfTheExecutablesFolder) {
  const fs::path self = fs::canonical("/proc/self/exe");
  const fs::path before = fs::current_path();
  fs::current_path("/");  // the working directory plays no part
  const auto resources = shell::_GetApplicationBundleResources();
  fs::current_path(before);
  ASSERT_NE(resources, nullptr);
  EXPECT_EQ(resources->NativePath(), (self.parent_path().parent_path() / "Resources").string());
}

}  // namespace
