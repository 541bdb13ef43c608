#pragma once
// The layout of the window and its controls, as data: every value that
// gives the window or a control its place and look, and the property
// stream that each one is given from those values.
#include <cstdint>
#include <string_view>
#include <vector>

#include "toolkit/Types.h"

namespace layout {

struct WindowLayout {
  tk::Integer width, height, minWidth, minHeight, maxWidth, maxHeight;
  tk::Integer frame;  // the toolkit's first kind: a plain titled window
  const char* title;
  bool closeButton, resizeable, maximizeButton, minimizeButton, fullScreenButton, composite;
  tk::Integer macProcId;
  tk::Integer placement;  // the toolkit's first kind: its default place
  bool visible, liveResize, fullScreen;
  bool hasBackColor;  // false: the backdrop alone is the background
  tk::Color backColor;
  bool menuBarVisible;
};

// What sets one label apart; the rest is the same for every label.
struct LabelLayout {
  const char* name;
  tk::Integer index;  // tk::kNoIndex unless a member of the board
  tk::Integer left, top, width, height;
  float textSize;  // pixels; 0 the ordinary size
  bool bold;
  tk::Color textColor;
  const char* text;
  tk::Integer tabIndex;
};

// What sets one push button apart; the rest is the same for all three.
struct ButtonLayout {
  const char* name;
  const char* initialParent;  // another control's name, or empty for the window
  tk::Integer left, top, width, height;
  const char* caption;
  bool isDefault;
  tk::Integer buttonStyle;
  tk::Integer tabIndex;  // counted within the parent
};

struct TimerLayout {
  tk::Integer period;  // milliseconds
  tk::Integer mode;    // 2: repeating
};

const WindowLayout& Window();
// The display panel's labels, the board apart.
const std::vector<LabelLayout>& Labels();
const std::vector<ButtonLayout>& Buttons();
const TimerLayout& Timer();

// The board: the cell of number index + 1. The grid was placed by hand and
// its odd pixels are kept.
tk::Integer CellLeft(tk::Integer index);
tk::Integer CellTop(tk::Integer index);
LabelLayout Cell(tk::Integer index);

// The property streams made from the values above.
using Stream = std::vector<std::uint8_t>;
const Stream& WindowStream();
// The stream of the control of that name (and Index, for a cell of "n1");
// the timer's is under "Timer1". An unknown control raises
// OutOfBoundsException.
const Stream& ControlStream(std::string_view name, tk::Integer index = tk::kNoIndex);
const Stream& CellStream(tk::Integer index);

struct NamedStream {
  const char* name;
  tk::Integer index;
  Stream bytes;
};
// Every control's stream: panel labels, buttons, the 90 cells, the timer.
const std::vector<NamedStream>& ControlStreams();

}  // namespace layout
