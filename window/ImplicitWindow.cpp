#include "window/ImplicitWindow.h"

#include <memory>

// There is never more than one window: a second call finds the first.
Window1& ImplicitWindow1() {
  static std::unique_ptr<Window1> instance;
  if (!instance) {
    instance = std::make_unique<Window1>();
    instance->Constructor();
  }
  return *instance;
}
