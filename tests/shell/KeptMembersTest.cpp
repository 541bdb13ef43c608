// What the window keeps though nothing of the game calls it: the accessors
// of its menu items, the constructor of a cell added at run time, and the
// timer's hold on its window, which must not keep the window alive.
#include "shell/MainMenuBar.h"
#include "tests/game/GameFixture.h"
#include "window/Window1_n1.h"
#include "window/Window1_wrapper_Timer1.h"

namespace testgame {
namespace {

using KeptMembersTest = GameTest;

TEST_F(KeptMembersTest, EachMenuAccessorFindsItsOwnItemAndNeedsAMenuBar) {
  Open();
#define CALLOQUIN_ACCESSOR(name) {#name, [](Window1& w) -> tk::MenuItem* { return w.name().get(); }}
  const std::vector<std::pair<std::string, tk::MenuItem* (*)(Window1&)>> accessors = {
      CALLOQUIN_ACCESSOR(EditMenu), CALLOQUIN_ACCESSOR(EditSelectAll), CALLOQUIN_ACCESSOR(EditSeparator2),
      CALLOQUIN_ACCESSOR(EditClear), CALLOQUIN_ACCESSOR(EditPaste), CALLOQUIN_ACCESSOR(EditCopy),
      CALLOQUIN_ACCESSOR(EditCut), CALLOQUIN_ACCESSOR(EditSeparator1), CALLOQUIN_ACCESSOR(EditUndo),
      CALLOQUIN_ACCESSOR(FileMenu), CALLOQUIN_ACCESSOR(FileQuit)};
#undef CALLOQUIN_ACCESSOR
  for (const auto& [name, accessor] : accessors) {
    const tk::MenuItem* item = accessor(*window);
    ASSERT_NE(item, nullptr) << name;
    EXPECT_EQ(item->Name(), name);
  }
  EXPECT_STREQ(window->FileQuit()->ClassName(), "QuitMenuItem");
  Window1 bare;  // never built: no menu bar
  EXPECT_THROW(bare.FileQuit(), tk::NilObjectException);
}

// A cell made at run time takes cell 0's layout and joins the set as member
// 0 of its window; one with no window fails.
TEST_F(KeptMembersTest, ACellMadeAtRunTimeJoinsTheBoardAsMemberZero) {
  Open();
  Window1_n1& cell = window->New<Window1_n1>();
  cell.Constructor();
  EXPECT_EQ(window->Controls().back(), &cell);
  EXPECT_EQ(cell.Name(), "n1");
  EXPECT_EQ(cell.Index(), 0);
  EXPECT_EQ(std::pair(cell.Left(), cell.Top()), std::pair(tk::Integer{35}, tk::Integer{32}));
  Window1_n1 orphan;
  EXPECT_THROW(orphan.Constructor(), tk::NilObjectException);
}

TEST_F(KeptMembersTest, TheTimerKnowsItsWindowWithoutKeepingItAlive) {
  Open();
  EXPECT_EQ(tk::CheckCast<Window1_wrapper_Timer1>(window->Timer1().get())->Window(), window.get());
  Window1_wrapper_Timer1 timer;
  EXPECT_EQ(timer.Window(), nullptr);
  auto other = std::make_unique<tk::Window>();
  timer._SetWindow(other.get());
  EXPECT_EQ(timer.Window(), other.get());
  other.reset();
  EXPECT_EQ(timer.Window(), nullptr);
}

}  // namespace
}  // namespace testgame
