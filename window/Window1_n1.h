#pragma once
// The class of the board's cells: a Label that is a member of the control
// set "n1". It adds no state, only its two constructors.
#include "toolkit/Label.h"

class Window1_n1 : public tk::Label {
 public:
  const char* ClassName() const override { return "Window1.n1"; }

  // The one the window uses: a member with the given index.
  void Constructor(tk::Integer index);
  // A member added at run time: takes cell 0's layout and joins the set as
  // member 0 of its window. The window makes all 90 cells at once, so
  // nothing calls this; it stays so that the set can grow.
  void Constructor();
};
