#include "window/ImplicitWindow.h"

#include <memory>

#include "toolkit/Application.h"

// There is never more than one window: a second call finds the first.
Window1& ImplicitWindow1() {
  static std::unique_ptr<Window1> instance;
  if (!instance) {
    instance = std::make_unique<Window1>();
    tk::AtFinalize([] { instance.reset(); });  // before the GUI goes
    instance->Constructor();
  }
  return *instance;
}
