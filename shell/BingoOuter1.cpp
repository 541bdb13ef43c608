#include "shell/BingoOuter1.h"

namespace shell {

std::shared_ptr<tk::Picture> BingoOuter1() {
  using M = _x_BingoOuter1;
  // The flag says nothing about the picture; whether it is open does.
  if (!M::firstCall) {
    M::firstCall = true;
    M::pic = nullptr;
  }
  if (!M::pic) M::pic = tk::Picture::_OpenFromApp("BingoOuter1");
  return M::pic;
}

}  // namespace shell
