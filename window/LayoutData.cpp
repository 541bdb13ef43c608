#include "window/LayoutData.h"

#include <array>

namespace layout {
namespace {

constexpr tk::Color kNearWhite = 0xFFFEFE;  // not 0xFFFFFF: the flash tells them apart
constexpr tk::Color kLayoutGrey = 0x8B8B8B;  // never seen: the first game's reset repaints the cells

constexpr std::array<tk::Integer, 10> kColumnLeft = {35, 99, 162, 227, 288, 349, 413, 478, 541, 602};
constexpr std::array<tk::Integer, 9> kRowTop = {31, 79, 127, 175, 222, 270, 319, 368, 417};

struct Offset {
  tk::Integer index, top;
};
// Cells that stand one pixel off their row.
constexpr std::array<Offset, 18> kOddCells = {{
    {0, 32},
    {20, 126}, {21, 126}, {27, 126}, {28, 126}, {29, 126},
    {31, 174}, {33, 174},
    {40, 223}, {41, 223}, {42, 223}, {43, 223}, {44, 223},
    {50, 271},
    {60, 320}, {67, 320},
    {70, 369},
    {80, 418},
}};

}  // namespace

const WindowLayout& Window() {
  static const WindowLayout window = {
      1036, 572, 64, 64, 32000, 32000, 0, "Calloquin",
      /*closeButton*/ false, /*resizeable*/ false, /*maximizeButton*/ false, /*minimizeButton*/ true,
      /*fullScreenButton*/ false, /*composite*/ false, /*macProcId*/ 0, /*placement*/ 0,
      /*visible*/ true, /*liveResize*/ true, /*fullScreen*/ false, /*hasBackColor*/ false,
      /*backColor*/ 0xFFFFFF, /*menuBarVisible*/ true,
  };
  return window;
}

tk::Integer CellLeft(tk::Integer index) { return kColumnLeft[static_cast<std::size_t>(index % 10)]; }

tk::Integer CellTop(tk::Integer index) {
  for (const Offset& odd : kOddCells) {
    if (odd.index == index) return odd.top;
  }
  return kRowTop[static_cast<std::size_t>(index / 10)];
}

LabelLayout Cell(tk::Integer index) {
  return {"n1", index, CellLeft(index), CellTop(index), 42, 36, 30, false, kLayoutGrey, "88", index + 8};
}

const std::vector<LabelLayout>& Labels() {
  static const std::vector<LabelLayout> labels = {
      {"MainNumber", tk::kNoIndex, 671, -10, 345, 324, 230, true, kNearWhite, "88", 0},  // its top edge lies outside
      {"LastNumber", tk::kNoIndex, 748, 350, 96, 81, 55, true, 0xFF7F00, "88", 1},
      {"NumbersGone", tk::kNoIndex, 868, 318, 122, 131, 80, true, 0x22FF0C, "88", 2},
      {"Label1", tk::kNoIndex, 678, 439, 153, 20, 0, false, kNearWhite, "Previous 3 Numbers", 3},
      {"Label2", tk::kNoIndex, 879, 439, 100, 20, 0, false, kNearWhite, "Numbers Gone", 4},
      {"Label3", tk::kNoIndex, 691, 302, 299, 20, 0, false, kNearWhite, "OK - Lets start a new game", 5},
      {"LastNumber1", tk::kNoIndex, 707, 381, 48, 42, 30, true, 0xFFFF00, "88", 98},
      {"LastNumber2", tk::kNoIndex, 671, 394, 35, 31, 18, true, kNearWhite, "88", 99},
  };
  return labels;
}

const std::vector<ButtonLayout>& Buttons() {
  static const std::vector<ButtonLayout> buttons = {
      {"PushButton3", "MainNumber", 714, 23, 258, 36, "RESET - New Game", false, 0, 0},
      {"PushButton1", "", 25, 483, 205, 67, "BINGO CALLER - OFF", false, 7, 6},  // style 7 sets the switch apart
      {"PushButton2", "", 663, 483, 353, 69, "NEXT NUMBER (Enter/Return)", true, 0, 7},  // Return and Enter press it
  };
  return buttons;
}

const TimerLayout& Timer() {
  static const TimerLayout timer = {400, 2};
  return timer;
}

}  // namespace layout
