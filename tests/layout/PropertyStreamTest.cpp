// A property stream that would hang Qt is refused. The values the window's
// own streams set are checked against the design's tables in tests/tables;
// that no stream at all gets past the toolkit's exceptions and the
// sanitizers is the fuzzer's (tests/fuzz).
#include <QWidget>

#include <gtest/gtest.h>

#include "toolkit/Label.h"
#include "toolkit/PropertyStream.h"
#include "toolkit/Window.h"

namespace {

// Qt would loop for ever on a widget in itself or in its own child.
TEST(PropertyStream, AControlCannotLieInItselfOrInItsOwnChild) {
  tk::Window window;
  tk::Label& outer = window.New<tk::Label>();
  tk::Label& inner = window.New<tk::Label>();
  window.AddControl("Outer", outer);
  window.AddControl("Inner", inner);
  tk::SetProperties(inner, tk::StreamBuilder().s("InitialParent", "Outer").Bytes());
  for (const char* parent : {"Outer", "Inner"}) {
    EXPECT_THROW(tk::SetProperties(outer, tk::StreamBuilder().s("InitialParent", parent).Bytes()),
                 tk::UnsupportedFormatException);
  }
  EXPECT_EQ(outer.InitialParent(), "");
  EXPECT_EQ(inner.Widget()->parentWidget(), outer.Widget());
}

}  // namespace
