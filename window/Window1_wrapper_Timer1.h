#pragma once
// The class of the window's timer: a Timer that is a child of a window. It
// holds its window weakly, so a timer never keeps a window alive.
#include <optional>

#include "toolkit/Timer.h"
#include "toolkit/WeakRef.h"
#include "toolkit/Window.h"

class Window1_wrapper_Timer1 : public tk::Timer {
 public:
  const char* ClassName() const override { return "Window1._wrapper_Timer1"; }

  // Set up by the toolkit when the timer joins its window.
  void _SetWindow(tk::Window* window) { ownerWindow_.emplace(window); }
  // Nil if never set or if the window is gone.
  tk::Window* Window() const {
    if (!ownerWindow_) return nullptr;
    return tk::CheckCast<tk::Window>(ownerWindow_->Value());
  }
  tk::Integer _Index() const { return index_; }
  void _SetIndex(tk::Integer index) { index_ = index; }

  void Constructor() {}

  void AttachTo(tk::Window& window) override {
    tk::Timer::AttachTo(window);
    _SetWindow(&window);
  }

 private:
  tk::Integer index_ = 0;  // the child's index; nothing reads it
  std::optional<tk::WeakRef> ownerWindow_;
};
