#pragma once
// The class of the window's timer: a Timer that is a child of a window.
#include "toolkit/Timer.h"

class Window1_wrapper_Timer1 : public tk::Timer {
 public:
  const char* ClassName() const override { return "Window1._wrapper_Timer1"; }

  void Constructor() {}
};
