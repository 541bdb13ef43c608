#include "window/Window1_n1.h"

#include "toolkit/Exceptions.h"
#include "toolkit/PropertyStream.h"
#include "toolkit/Window.h"
#include "window/LayoutData.h"

void Window1_n1::Constructor(tk::Integer index) {
  SetIndex(index);
  tk::RectControl::Constructor();
}

void Window1_n1::Constructor() {
  tk::SetProperties(*this, layout::CellStream(0));
  SetIndex(0);
  tk::Window* window = OwnerWindow();
  if (window == nullptr) throw tk::NilObjectException();
  window->AddControl("n1", *this);
  tk::RectControl::Constructor();
}
