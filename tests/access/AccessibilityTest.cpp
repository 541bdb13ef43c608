// What a screen reader learns of the window, read through Qt's own
// accessibility interfaces, with the events the toolkit sends captured.
#include <QAccessible>
#include <QWidget>

#include <algorithm>
#include <utility>
#include <vector>

#include "tests/game/GameFixture.h"
#include "toolkit/Strings.h"

namespace testgame {
namespace {

std::string Said(const tk::RectControl& control, QAccessible::Text what) {
  return QAccessible::queryAccessibleInterface(control.Widget())->text(what).toStdString();
}

class AccessibilityTest : public GameTest {
 protected:
  std::vector<std::pair<const tk::RectControl*, tk::AccessibleChange>> events;

 private:
  tk::ScopedHook<tk::AccessibleObserver> observer_{
      tk::SetAccessibleObserver,
      [this](const tk::RectControl& c, tk::AccessibleChange change) { events.emplace_back(&c, change); }};
};

TEST_F(AccessibilityTest, EveryControlIsNamedAndEachPressAnnouncesTheNumberWithItsCall) {
  const std::vector<tk::Integer> order = OrderA();
  Open({order, order});
  for (tk::Control* c : window->Controls()) {
    if (auto* r = dynamic_cast<tk::RectControl*>(c)) {
      EXPECT_NE(Said(*r, QAccessible::Name), "") << c->Name();
    }
  }
  EXPECT_EQ(Said(*window->MainNumber(), QAccessible::Name), "Current number");

  const std::pair<const tk::RectControl*, tk::AccessibleChange> told{window->MainNumber().get(), tk::AccessibleChange::Description};
  for (int press = 0; press < 2; ++press) {
    events.clear();
    Press();
    const Snapshot s = Look();
    ASSERT_EQ(s.main, tk::Str(order[press]));
    EXPECT_EQ(Said(*window->MainNumber(), QAccessible::Description), s.main + ", " + s.call);
    EXPECT_NE(std::find(events.begin(), events.end(), told), events.end()) << "press " << press;
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    const std::pair<const tk::RectControl*, tk::AccessibleChange> announced{window->MainNumber().get(),
                                                                            tk::AccessibleChange::Announcement};
    EXPECT_EQ(std::count(events.begin(), events.end(), announced), 1) << "press " << press;
#endif
  }
  auto cell = [&](tk::Integer n) { return Said(*window->n1(n - 1), QAccessible::Name); };
  EXPECT_EQ(cell(order[0]), "Number " + tk::Str(order[0]) + ", called");
  EXPECT_EQ(cell(order[2]), "Number " + tk::Str(order[2]) + ", not called");
  EXPECT_EQ(Said(*window->LastNumber(), QAccessible::Description), tk::Str(order[0]));

  answers.push_back(tk::kAnswerYes);
  Reset();
  EXPECT_EQ(cell(order[0]), "Number " + tk::Str(order[0]) + ", not called");
  EXPECT_EQ(Said(*window->MainNumber(), QAccessible::Description), Look().call) << "a new game is announced";
  window->PushButton1()->Push();
  EXPECT_EQ(Said(*window->PushButton1(), QAccessible::Name), "BINGO CALLER - ON");
}

}  // namespace
}  // namespace testgame
