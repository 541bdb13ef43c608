#pragma once
// The class of the board's cells: a Label that is a member of the control
// set "n1". It adds no state, only its constructor.
#include "toolkit/Label.h"

class Window1_n1 : public tk::Label {
 public:
  const char* ClassName() const override { return "Window1.n1"; }

  // A member with the given index.
  void Constructor(tk::Integer index);
};
