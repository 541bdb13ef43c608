#pragma once
// Qt keeps sizes and positions in int, and adds them (a rectangle's right
// edge is x + width - 1): a 64-bit value from a layout must be brought into
// the range Qt can add without overflow. The control still reads back what
// was set; only what reaches Qt is limited.
#include <QtWidgets/qwidget.h>

#include <algorithm>
#include <cmath>

#include "toolkit/Types.h"

namespace tk {

// QWIDGETSIZE_MAX (2^24 - 1) is Qt's own largest size; twice it still adds
// safely within an int.
inline int QtExtent(Integer v) { return static_cast<int>(std::clamp<Integer>(v, 0, QWIDGETSIZE_MAX)); }
inline int QtCoordinate(Integer v) {
  return static_cast<int>(std::clamp<Integer>(v, -QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
}
inline int QtPixels(double v) {
  return std::isfinite(v) ? static_cast<int>(std::lround(std::clamp(v, 0.0, 65535.0))) : 0;
}

}  // namespace tk
