#pragma once
// The window's backdrop picture and its loader.
#include <memory>

#include "toolkit/Picture.h"

namespace shell {

// The module of the backdrop: the picture once it is open, and a flag that
// only marks the first call. Reached through BingoOuter1() alone.
class _x_BingoOuter1 {
  friend std::shared_ptr<tk::Picture> BingoOuter1();
  static inline std::shared_ptr<tk::Picture> pic;
  static inline bool firstCall = false;
};

// The picture "BingoOuter1" from the resources, or nil when it can't be
// had. An open picture is kept for the run; a nil is tried again at the
// next call.
std::shared_ptr<tk::Picture> BingoOuter1();

}  // namespace shell
