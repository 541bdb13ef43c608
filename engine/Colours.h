#pragma once
// The colours that the game sets while it runs (the layout's own stand in
// its data). One home, because the board, the flash and what a screen
// reader is told must agree on them: a cell is "called" by its yellow.
#include "toolkit/Types.h"

namespace colours {

inline constexpr tk::Color kCalledYellow = 0xFFFF00;  // a called cell
inline constexpr tk::Color kCellGrey = 0xAAAAAA;      // a cell not called yet
// The flash's two phases, and the colour a press gives the big number.
inline constexpr tk::Color kWhite = 0xFFFFFF;
inline constexpr tk::Color kBlack = 0x000000;

}  // namespace colours
