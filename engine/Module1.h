#pragma once
// The whole memory of a game: six globals that the game methods of Window1
// read and write directly. One game, one window, nothing saved.
#include "toolkit/Array.h"
#include "toolkit/Types.h"

namespace Module1 {

// Scratch: the candidate index of the draw, 0 to 89.
inline tk::Integer n = 0;
// Used flags of the draw: element i is true once number i + 1 is placed.
inline tk::Array<bool> thearray(89);
// The calling order: element i is the number called at press i + 1.
inline tk::Array<tk::Integer> bingonumbers(89);
// Numbers called in this game, so the index of the next one to call. The
// draw borrows it as its fill index.
inline tk::Integer HowManyNumbersGone = 0;
// The calls: element i is the call of number i + 1 (empty until the window opens).
inline tk::Array<tk::String> nickname(-1);
// The caller is on: each new number's voice clip is played.
inline bool Bingo_Caller = false;

}  // namespace Module1
