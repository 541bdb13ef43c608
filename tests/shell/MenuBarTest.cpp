// The menu bar, exactly File and Edit as shown in the window, and what else
// the window keeps though nothing of the game calls it: its accessors of
// the menu items, the constructor of a cell added at run time, and the
// timer's hold on its window. That the real start-up shows one bar, above
// the content, is the X tests' and the exit-status test's.
#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include <map>

#include "shell/MainMenuBar.h"
#include "tests/game/GameFixture.h"
#include "tests/tables/Tables.h"
#include "window/Window1_n1.h"
#include "window/Window1_wrapper_Timer1.h"

namespace testgame {
namespace {

// "Cmd" is the platform's command modifier, Ctrl to Qt.
QKeySequence KeyOf(const tables::MenuRow& row) {
  return QKeySequence::fromString(QString::fromUtf8(row.shortcut.data(), qsizetype(row.shortcut.size())).replace("Cmd", "Ctrl"));
}

using MenuBarTest = GameTest;

// The bar, menu by menu, holds exactly the menu rows as the design gives
// them, in order, and the window shows each row (its text, shortcut, and
// that it is visible and enabled) by the item's own action. The window's
// accessor of each item finds that item; without a bar, it raises.
TEST_F(MenuBarTest, TheWindowShowsEveryMenuRowInOrderAndReachesEachByItsAccessor) {
  Open();
#define CALLOQUIN_ACCESSOR(name) {#name, [](Window1& w) -> tk::MenuItem* { return w.name().get(); }}
  const std::map<std::string, tk::MenuItem* (*)(Window1&)> accessors = {
      CALLOQUIN_ACCESSOR(EditMenu), CALLOQUIN_ACCESSOR(EditSelectAll), CALLOQUIN_ACCESSOR(EditSeparator2),
      CALLOQUIN_ACCESSOR(EditClear), CALLOQUIN_ACCESSOR(EditPaste), CALLOQUIN_ACCESSOR(EditCopy),
      CALLOQUIN_ACCESSOR(EditCut), CALLOQUIN_ACCESSOR(EditSeparator1), CALLOQUIN_ACCESSOR(EditUndo),
      CALLOQUIN_ACCESSOR(FileMenu), CALLOQUIN_ACCESSOR(FileQuit)};
#undef CALLOQUIN_ACCESSOR
  std::vector<std::tuple<tk::String, const tk::MenuItem*, QAction*>> shown;  // parent, item, its action
  const tk::MenuBar& bar = ImplicitMainMenuBar();
  const QList<QAction*> menus = window->TopLevel()->menuBar()->actions();
  ASSERT_EQ(menus.size(), bar.Count()) << "the bar was built more than once, or not shown";
  for (tk::Integer m = 0; m < bar.Count(); ++m) {
    const tk::MenuItem& menu = *bar.Item(m);
    shown.push_back({"", &menu, menus[m]});
    const QList<QAction*> items = menus[m]->menu<QMenu*>()->actions();
    ASSERT_EQ(items.size(), menu.Count()) << menu.Name();
    for (tk::Integer i = 0; i < menu.Count(); ++i) shown.push_back({menu.Name(), menu.Item(i).get(), items[i]});
  }
  ASSERT_EQ(shown.size(), tables::kMenu.size());
  for (std::size_t r = 0; r < shown.size(); ++r) {
    const tables::MenuRow& row = tables::kMenu[r];
    const auto& [parent, item, action] = shown[r];
    EXPECT_EQ(parent, row.parent) << row.name;
    EXPECT_EQ(item->Name(), row.name);
    EXPECT_EQ(item->ClassName(), row.className) << row.name;
    EXPECT_EQ((action->isSeparator() ? QStringLiteral("-") : action->text()).toStdString(), row.text) << row.name;
    EXPECT_EQ(action->shortcut(), KeyOf(row)) << row.name;
    EXPECT_TRUE(action->isVisible() && action->isEnabled()) << row.name;
    EXPECT_EQ(item->_Shown(), std::vector<QAction*>{action}) << row.name;
    EXPECT_EQ(accessors.at(std::string(row.name))(*window), item) << row.name;
  }
  Window1 bare;  // never built: no menu bar
  EXPECT_THROW(bare.FileQuit(), tk::NilObjectException);
}

// A cell made at run time takes cell 0's layout and joins the set as member
// 0 of its window (one with no window fails); the timer knows its window,
// but doesn't keep it alive.
TEST_F(MenuBarTest, ACellMadeAtRunTimeJoinsTheBoardAndTheTimerHoldsItsWindowWeakly) {
  Open();
  Window1_n1& cell = window->New<Window1_n1>();
  cell.Constructor();
  EXPECT_EQ(window->Controls().back(), &cell);
  EXPECT_EQ(std::tuple(cell.Name(), cell.Index(), cell.Left(), cell.Top()), std::tuple("n1", 0, 35, 32));
  Window1_n1 orphan;
  EXPECT_THROW(orphan.Constructor(), tk::NilObjectException);

  EXPECT_EQ(tk::CheckCast<Window1_wrapper_Timer1>(window->Timer1().get())->Window(), window.get());
  Window1_wrapper_Timer1 timer;
  auto other = std::make_unique<tk::Window>();
  timer._SetWindow(other.get());
  EXPECT_EQ(timer.Window(), other.get());
  other.reset();
  EXPECT_EQ(timer.Window(), nullptr);
}

}  // namespace
}  // namespace testgame
