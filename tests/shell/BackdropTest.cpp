// The backdrop's loader and the picture behind it, in a temporary bundle.
// The loader keeps its state for the process, so each test needs a process
// of its own (CTest gives one).
#include <gtest/gtest.h>
#include <stdlib.h>

#include <QImage>
#include <QPixmap>
#include <filesystem>
#include <fstream>

#include "shell/BingoOuter1.h"
#include "toolkit/FolderItem.h"
#include "toolkit/Picture.h"
#include "toolkit/ScopedHook.h"

namespace {
namespace fs = std::filesystem;

class BackdropTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string dir = (fs::temp_directory_path() / "calloquin-backdrop-XXXXXX").string();
    ASSERT_NE(mkdtemp(dir.data()), nullptr);
    root_ = dir;
    fs::create_directories(root_ / "bin");
    fs::create_directories(root_ / "Resources");
    exe_ = std::make_shared<tk::FolderItem>((root_ / "bin" / "calloquin").string());
  }
  void TearDown() override {
    std::error_code ignored;
    fs::remove_all(root_, ignored);
  }
  fs::path Picture() const { return root_ / "Resources" / "BingoOuter1.png"; }
  void PutRealPicture() { fs::copy_file(fs::path(CALLOQUIN_BUNDLE_DIR) / "Resources" / "BingoOuter1.png", Picture()); }
  void PutBytes(const std::string& bytes) { std::ofstream(Picture(), std::ios::binary) << bytes; }

  fs::path root_;
  std::shared_ptr<tk::FolderItem> exe_;
  tk::ScopedHook<tk::ExecutableFileSource> source_{tk::SetExecutableFileSource, [this] { return exe_; }};
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

// Pictures other than the shipped one: translucent, grey, with a palette.
TEST_F(BackdropTest, OtherKindsOfPngReadAsQtReadsThem) {
  QImage translucent(40, 30, QImage::Format_ARGB32);
  for (int y = 0; y < 30; ++y)
    for (int x = 0; x < 40; ++x) translucent.setPixel(x, y, qRgba(x * 6, y * 8, 200, (x + y) * 3));
  for (const QImage& image : {translucent, translucent.convertToFormat(QImage::Format_Grayscale8),
                              translucent.convertToFormat(QImage::Format_Indexed8)}) {
    ASSERT_TRUE(image.save(QString::fromStdString(Picture().string()), "PNG"));
    const QImage qt(QString::fromStdString(Picture().string()));
    const QImage ours = tk::Picture::_OpenFromApp("BingoOuter1")->Pixmap().toImage();
    // Compared premultiplied, as the window draws them: undoing that is
    // lossy where a pixel is nearly transparent.
    constexpr auto kDrawn = QImage::Format_ARGB32_Premultiplied;
    EXPECT_EQ(ours.convertToFormat(kDrawn), qt.convertToFormat(kDrawn)) << "format " << image.format();
  }
}

}  // namespace
