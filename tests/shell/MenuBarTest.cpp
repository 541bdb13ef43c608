// The menu bar: exactly File and Edit as shown in the window. That the real
// start-up shows one bar, above the content, is the X tests' and the
// exit-status test's.
#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include "shell/MainMenuBar.h"
#include "tests/game/GameFixture.h"
#include "tests/tables/Tables.h"

namespace testgame {
namespace {

// "Cmd" is the platform's command modifier, Ctrl to Qt.
QKeySequence KeyOf(const tables::MenuRow& row) {
  return QKeySequence::fromString(QString::fromUtf8(row.shortcut.data(), qsizetype(row.shortcut.size())).replace("Cmd", "Ctrl"));
}

using MenuBarTest = GameTest;

// The bar, menu by menu, holds exactly the menu rows as the design gives
// them, in order, and the window shows each row (its text, shortcut, and
// that it is visible and enabled) by the item's own action.
TEST_F(MenuBarTest, TheWindowShowsEveryMenuRowInOrder) {
  Open();
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
  }
}

}  // namespace
}  // namespace testgame
