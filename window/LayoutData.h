#pragma once
// The layout of the window and its controls, as data: every value that
// gives a control its place and look. One table drives the building of all
// 102 controls.
#include <array>
#include <vector>

#include "toolkit/Types.h"

namespace layout {

struct LabelLayout {
  const char* name;
  tk::Integer index;  // tk::kNoIndex unless a member of the board
  tk::Integer left, top, width, height;
  double textSize;  // pixels; 0 the ordinary size
  bool bold;
  tk::Color textColor;
  const char* text;
  tk::Integer tabIndex;
};

struct ButtonLayout {
  const char* name;
  const char* initialParent;
  tk::Integer left, top, width, height;
  const char* caption;
  bool isDefault;
  tk::Integer buttonStyle;
  tk::Integer tabIndex;
};

// The board: where the cell of number index + 1 stands. The grid is placed
// by hand and its odd pixels are kept.
tk::Integer CellLeft(tk::Integer index);
tk::Integer CellTop(tk::Integer index);
LabelLayout Cell(tk::Integer index);

// Window frame values.
inline constexpr tk::Integer kWindowWidth = 1036;
inline constexpr tk::Integer kWindowHeight = 572;
inline constexpr const char* kWindowTitle = "Calloquin";

// The controls in creation order, which is also stacking order.
enum class Kind { Label, Button, Cell, Timer };
struct Entry {
  Kind kind;
  tk::Integer which;  // index into Labels(), Buttons(), or the cell index
};
const std::vector<Entry>& CreationOrder();
const std::vector<LabelLayout>& Labels();
const std::vector<ButtonLayout>& Buttons();

inline constexpr tk::Integer kTimerPeriod = 400;
inline constexpr tk::Integer kTimerMode = 2;

}  // namespace layout
