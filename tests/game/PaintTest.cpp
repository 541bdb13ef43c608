// What the window really draws after a few presses: the numbers' pixels in
// their colours, not only the labels' texts.
#include <QCoreApplication>
#include <QImage>
#include <QMainWindow>
#include <QScreen>
#include <QPixmap>
#include <QWidget>

#include "tests/game/GameFixture.h"
#include "tests/tables/Tables.h"

namespace testgame {
namespace {

// How many pixels of the rectangle pass the test.
template <class Test>
int Count(QRect area, Test test) {
  int n = 0;
  for (int y = area.top(); y <= area.bottom(); ++y)
    for (int x = area.left(); x <= area.right(); ++x) n += test(x, y);
  return n;
}

// Pixels of exactly that colour inside the named label's rectangle.
int Pixels(const QImage& shot, std::string_view label, QRgb colour) {
  const auto l = *std::ranges::find_if(tables::kPanel, [&](const tables::Label& p) { return p.name == label; });
  const QRect area = QRect(int(l.left), int(l.top), int(l.width), int(l.height)) & shot.rect();
  return Count(area, [&](int x, int y) { return (shot.pixel(x, y) & 0xFFFFFF) == colour; });
}

QImage Shot(Window1& window) { return window.Content()->grab().toImage().convertToFormat(QImage::Format_RGB32); }

// Pixels on the screen that differ from a paint of the whole window.
int Stale(QWidget* top) {
  QCoreApplication::processEvents();
  const QImage screen = top->screen()->grabWindow(top->winId()).toImage().convertToFormat(QImage::Format_RGB32);
  const QImage whole = top->grab().toImage().convertToFormat(QImage::Format_RGB32);
  if (screen.size() != whole.size()) return -1;
  return Count(whole.rect(), [&](int x, int y) { return screen.pixel(x, y) != whole.pixel(x, y); });
}

using PaintTest = GameTest;

// The called numbers are drawn large in their colours: solid strokes of two
// digits at 230, 80 and 55 pixels, where only anti-aliased edges differ from
// the colour; the fifth number's same digits drawn black at a tick. Each
// press repaints only what changed, and buttons copy their kept look: what
// is then on the screen must be what a paint of the whole window shows, or
// a part was left stale.
TEST_F(PaintTest, TheNumbersAreDrawnLargeInTheirColoursAndNothingIsLeftStale) {
  Open({OrderA()});
  QWidget* top = window->TopLevel();
  for (int i = 0; i < 20; ++i) {
    Press();
    if (i == 4) {  // the flash's black, then white again at the next press
      const int white = Pixels(Shot(*window), "MainNumber", 0xFFFFFF);
      Tick();
      const QImage dark = Shot(*window);
      EXPECT_GT(Pixels(dark, "MainNumber", 0x000000), 4000);
      EXPECT_LT(Pixels(dark, "MainNumber", 0xFFFFFF), white - 4000);
    }
    EXPECT_EQ(Stale(top), 0) << "after press " << i + 1;
  }
  const QImage shot = Shot(*window);
  EXPECT_GT(Pixels(shot, "MainNumber", 0xFFFFFF), 4000);
  EXPECT_GT(Pixels(shot, "NumbersGone", 0x22FF0C), 600);
  EXPECT_GT(Pixels(shot, "LastNumber", 0xFF7F00), 250);
  // The switch's new caption must still show, and the old one again when it
  // is switched back.
  QWidget* caller = window->PushButton1()->Widget();
  const QImage off = caller->grab().toImage();
  window->PushButton1()->Push();
  EXPECT_EQ(Stale(top), 0) << "after the caller switch";
  EXPECT_NE(caller->grab().toImage(), off);
  window->PushButton1()->Push();
  EXPECT_EQ(caller->grab().toImage(), off);
}

}  // namespace
}  // namespace testgame
