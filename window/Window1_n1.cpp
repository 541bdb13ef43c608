#include "window/Window1_n1.h"

void Window1_n1::Constructor(tk::Integer index) {
  SetIndex(index);
  tk::RectControl::Constructor();
}
