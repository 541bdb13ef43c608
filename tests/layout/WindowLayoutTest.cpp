// The window's controls: their order and their stacking. Their values are
// checked against the design's tables in tests/tables.
#include <QLabel>
#include <QMainWindow>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "window/Window1.h"

namespace {

class BuiltWindow : public ::testing::Test {
 protected:
  void SetUp() override { window->Constructor(); }
  std::unique_ptr<Window1> window = std::make_unique<Window1>();
};

TEST_F(BuiltWindow, MakesThe102ControlsInOrderAndStacksThemSo) {
  std::vector<std::string> names = {"MainNumber", "PushButton3", "LastNumber", "NumbersGone", "Label1", "Label2", "Label3", "PushButton1", "PushButton2"};
  names.resize(99, "n1");
  names.insert(names.end(), {"LastNumber1", "LastNumber2", "Timer1"});

  const auto& controls = window->Controls();
  ASSERT_EQ(controls.size(), 102u);
  std::vector<QWidget*> created;
  for (std::size_t i = 0; i < controls.size(); ++i) {
    EXPECT_EQ(controls[i]->Name(), names[i]) << i;
    EXPECT_EQ(controls[i]->Index(), i >= 9 && i < 99 ? tk::Integer(i - 9) : tk::kNoIndex) << i;
    auto* rect = dynamic_cast<tk::RectControl*>(controls[i]);
    if (rect != nullptr && rect->Widget()->parentWidget() == window->Content()) created.push_back(rect->Widget());
  }

  // Qt stacks siblings in the order of its child list; PushButton3 lies in
  // MainNumber's widget, so over it.
  std::vector<QWidget*> stacked;
  for (QObject* child : window->Content()->children())
    if (std::count(created.begin(), created.end(), child) > 0) stacked.push_back(static_cast<QWidget*>(child));
  EXPECT_EQ(created.size(), 100u);
  EXPECT_EQ(stacked, created);
  EXPECT_EQ(window->PushButton3()->Widget()->parentWidget(), window->MainNumber()->Widget());
}

}  // namespace
