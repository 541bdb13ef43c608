// Reads a screenshot of the window (menu bar on top, content area below)
// and reports which board cells show the called yellow, taking the cells'
// rectangles from the layout data. Prints "called <count> stray <pixels>"
// and the numbers; stray pixels are yellow on the board but in no cell.
#include <QImage>
#include <QRect>

#include <algorithm>
#include <cstdio>

#include "window/LayoutData.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s screenshot.png\n", argv[0]);
    return 1;
  }
  const QImage shot = QImage(QString::fromLocal8Bit(argv[1])).convertToFormat(QImage::Format_RGB32);
  const auto width = static_cast<int>(layout::Window().width), height = static_cast<int>(layout::Window().height);
  if (shot.width() != width || shot.height() < height) {
    std::fprintf(stderr, "not a picture of the window: %dx%d\n", shot.width(), shot.height());
    return 1;
  }
  const int below = shot.height() - height;  // whatever lies above the content area

  QRect cells[90], board;
  for (int i = 0; i < 90; ++i) {
    const layout::LabelLayout c = layout::Cell(i);
    board |= cells[i] = QRect(int(c.left), int(c.top) + below, int(c.width), int(c.height));
  }
  long yellow[90] = {};
  long stray = 0;
  for (int y = board.top(); y <= board.bottom(); ++y) {
    for (int x = board.left(); x <= board.right(); ++x) {
      if ((shot.pixel(x, y) & 0xFFFFFF) != 0xFFFF00) continue;
      const auto cell = std::find_if(cells, cells + 90, [&](const QRect& r) { return r.contains(x, y); });
      ++(cell != cells + 90 ? yellow[cell - cells] : stray);
    }
  }
  int called = 0;
  for (long count : yellow) called += count > 0;
  std::printf("called %d stray %ld\n", called, stray);
  for (int i = 0; i < 90; ++i) {
    if (yellow[i] > 0) std::printf("%d\n", i + 1);
  }
  return 0;
}
