// Reads a screenshot of the window (menu bar on top, content area below)
// and reports which board cells show the called yellow, taking the cells'
// rectangles from the layout data. Prints "called <count> stray <pixels>"
// and the numbers; stray pixels are yellow on the board but in no cell.
#include <QImage>
#include <QRect>

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

  QRect cells[90];
  QRect board;
  for (int i = 0; i < 90; ++i) {
    const layout::LabelLayout c = layout::Cell(i);
    cells[i] = QRect(static_cast<int>(c.left), static_cast<int>(c.top) + below, static_cast<int>(c.width),
                     static_cast<int>(c.height));
    board |= cells[i];
  }
  int yellow[90] = {};
  long stray = 0;
  for (int y = board.top(); y <= board.bottom(); ++y) {
    for (int x = board.left(); x <= board.right(); ++x) {
      if ((shot.pixel(x, y) & 0xFFFFFF) != 0xFFFF00) continue;
      int i = 0;
      while (i < 90 && !cells[i].contains(x, y)) ++i;
      if (i < 90) {
        ++yellow[i];
      } else {
        ++stray;
      }
    }
  }
  int called = 0;
  for (int count : yellow) called += count > 0;
  std::printf("called %d stray %ld\n", called, stray);
  for (int i = 0; i < 90; ++i) {
    if (yellow[i] > 0) std::printf("%d\n", i + 1);
  }
  return 0;
}
