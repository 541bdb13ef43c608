#pragma once
// The bank of voice clips: 90 members, one for each number, each with a
// function of its own, vocal1() to vocal90(). A member opens its file
// "vocal<k>.mp3" from the resources at its first call and keeps the result
// for the rest of the run; a failed first call is never tried again.
#include <memory>

#include "toolkit/Sound.h"

// Expands X(1) X(2) ... X(90), in ascending order. The numbers come out as
// plain decimal tokens with no leading zero, so #k spells them as the
// board does.
#define CALLOQUIN_NUMBERS_OF_TEN(X, tens) \
  X(tens##1) X(tens##2) X(tens##3) X(tens##4) X(tens##5) X(tens##6) X(tens##7) X(tens##8) X(tens##9)
#define CALLOQUIN_FOR_EACH_NUMBER(X)                                                                     \
  CALLOQUIN_NUMBERS_OF_TEN(X, ) X(10) CALLOQUIN_NUMBERS_OF_TEN(X, 1) X(20) CALLOQUIN_NUMBERS_OF_TEN(X, 2) \
  X(30) CALLOQUIN_NUMBERS_OF_TEN(X, 3) X(40) CALLOQUIN_NUMBERS_OF_TEN(X, 4) X(50)                        \
  CALLOQUIN_NUMBERS_OF_TEN(X, 5) X(60) CALLOQUIN_NUMBERS_OF_TEN(X, 6) X(70)                              \
  CALLOQUIN_NUMBERS_OF_TEN(X, 7) X(80) CALLOQUIN_NUMBERS_OF_TEN(X, 8) X(90)

namespace caller {

// Member k. Its state is its own and is reached only through its function.
template <int k>
class _x_vocal;

// vocal7() is the function of member _x_vocal7, and so on: the clip of the
// number, or nil and why when it can't be had. Raises NilObjectException when the
// resources can't be located or the folder gives no item for the file.
#define CALLOQUIN_DECLARE_VOCAL(k)        \
  using _x_vocal##k = _x_vocal<k>; \
  const tk::Opened<tk::Sound>& vocal##k();
CALLOQUIN_FOR_EACH_NUMBER(CALLOQUIN_DECLARE_VOCAL)
#undef CALLOQUIN_DECLARE_VOCAL

}  // namespace caller
