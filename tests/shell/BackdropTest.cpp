// The backdrop's loader and the picture behind it, in a temporary bundle.
// The loader keeps its state for the process, so each test needs a process
// of its own (CTest gives one). That the real program finds its resources
// beside its own folder, wherever it is started from, is the package
// test's (packaging/test-deb.sh starts the installed program from /).
#include <QImage>
#include <QPixmap>
#include <fstream>

#include "shell/BingoOuter1.h"
#include "tests/TempBundle.h"
#include "toolkit/Picture.h"

namespace {

class BackdropTest : public ::testing::Test {
 protected:
  fs::path Picture() const { return bundle_.resources / "BingoOuter1.png"; }
  // A picture of the window's size whose every pixel is known.
  static QImage Pattern() {
    QImage image(1036, 572, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) image.setPixel(x, y, qRgb(x % 256, y % 256, (x / 256) * 50 + y / 256));
    }
    return image;
  }
  void PutBytes(const std::string& bytes) { std::ofstream(Picture(), std::ios::binary) << bytes; }

  TempBundle bundle_;
};

TEST_F(BackdropTest, WhatIsNoPictureGivesNilAndIsTriedAgainAndAnOpenOneIsKept) {
  EXPECT_EQ(shell::BingoOuter1(), nullptr);
  for (const std::string& bytes : {std::string(), std::string(4096, '\x5a')}) {
    PutBytes(bytes);
    EXPECT_EQ(shell::BingoOuter1(), nullptr);
    fs::remove(Picture());
  }
  ASSERT_TRUE(Pattern().save(QString::fromStdString(Picture().string()), "PNG"));
  const auto first = shell::BingoOuter1();
  ASSERT_NE(first, nullptr) << "a nil is tried again at the next call";
  EXPECT_EQ(first->Width(), 1036);
  EXPECT_EQ(first->Height(), 572);
  EXPECT_EQ(first->Pixmap().toImage().convertToFormat(QImage::Format_RGB32), Pattern()) << "not the file's pixels";
  fs::remove(Picture());
  EXPECT_EQ(shell::BingoOuter1(), first) << "an open picture is kept for the run";
}

}  // namespace
