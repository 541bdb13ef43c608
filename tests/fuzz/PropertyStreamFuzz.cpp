// Random streams against each class's property table, applied as the
// window applies its own: to a fresh window, or to a fresh control just
// added to one. A stream may be refused only by a tk exception; anything
// else that escapes, and any sanitizer finding, is a fault.
#include <cstdlib>
#include <span>

#include "tests/fuzz/FuzzInput.h"
#include "toolkit/Application.h"
#include "toolkit/Label.h"
#include "toolkit/PropertyStream.h"
#include "toolkit/PushButton.h"
#include "toolkit/Timer.h"
#include "toolkit/Window.h"

namespace {

template <class T>
void ApplyToControl(std::span<const std::uint8_t> stream) {
  tk::Window window;
  T& control = window.New<T>();
  window.AddControl("MainNumber", control);  // the one parent a real stream names
  tk::SetProperties(control, stream);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  setenv("QT_LOGGING_RULES", "*=false", 1);  // Qt's warnings about odd sizes would drown the run
  tk::EnsureGui();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::span<const std::uint8_t> stream(data + 1, size - 1);
  try {
    switch (data[0] % fuzz::kClassCount) {
      case fuzz::kWindow: {
        tk::Window window;
        tk::SetProperties(window, stream);
        break;
      }
      case fuzz::kLabel: ApplyToControl<tk::Label>(stream); break;
      case fuzz::kPushButton: ApplyToControl<tk::PushButton>(stream); break;
      case fuzz::kTimer: ApplyToControl<tk::Timer>(stream); break;
    }
  } catch (const tk::RuntimeException&) {
    // A stream refused cleanly.
  }
  return 0;
}
