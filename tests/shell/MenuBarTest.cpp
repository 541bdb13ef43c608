// The menu bar: exactly File and Edit as shown in the window, one bar for
// the application and the window, and Edit commands that change nothing.
#include <QAction>
#include <QCoreApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QProxyStyle>
#include <QSignalSpy>
#include <QTimer>
#include <QToolButton>
#include <QtTest/QTest>

#include "shell/MainMenuBar.h"
#include "shell/Startup.h"
#include "tests/game/GameFixture.h"
#include "tests/tables/Tables.h"
#include "window/ImplicitWindow.h"

namespace testgame {
namespace {

// "Cmd" is the platform's command modifier, Ctrl to Qt.
QKeySequence KeyOf(const tables::MenuRow& row) {
  return QKeySequence::fromString(QString::fromUtf8(row.shortcut.data(), qsizetype(row.shortcut.size())).replace("Cmd", "Ctrl"));
}

using MenuBarTest = GameTest;

// The bar, menu by menu, holds exactly the menu rows as the design gives
// them, in order, and the window shows each row by the item's own action.
TEST_F(MenuBarTest, TheWindowShowsEveryMenuRowInOrder) {
  Open();
  struct Shown {
    tk::String parent;
    const tk::MenuItem* item;
    QAction* action;
  };
  std::vector<Shown> shown;
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
    EXPECT_EQ(item->Text(), row.text) << row.name;
    EXPECT_EQ(item->KeyboardShortcut(), row.shortcut) << row.name;
    EXPECT_EQ(item->ClassName(), row.className) << row.name;
    EXPECT_TRUE(item->AutoEnable() && item->Visible()) << row.name;
    EXPECT_EQ((action->isSeparator() ? QStringLiteral("-") : action->text()).toStdString(), row.text) << row.name;
    EXPECT_EQ(action->shortcut(), KeyOf(row)) << row.name;
    EXPECT_TRUE(action->isVisible() && action->isEnabled()) << row.name;
    EXPECT_EQ(item->_Shown(), std::vector<QAction*>{action}) << row.name;
  }
}

// The bar's button for menus that don't fit gets its icon only when it is
// drawn, and then it is the platform style's own.
TEST_F(MenuBarTest, TheOverflowButtonShowsTheStylesOwnIcon) {
  Open();
  const auto* overflow = window->TopLevel()->menuBar()->findChild<QToolButton*>("qt_menubar_ext_button");
  ASSERT_NE(overflow, nullptr);
  const auto* style = qobject_cast<const QProxyStyle*>(QApplication::style());
  ASSERT_NE(style, nullptr);
  const QImage own = style->baseStyle()->standardIcon(QStyle::SP_ToolBarHorizontalExtensionButton).pixmap(16).toImage();
  ASSERT_FALSE(own.isNull());
  EXPECT_EQ(overflow->icon().pixmap(16).toImage(), own);
}

// With the flash running and a game under way: every Edit action, chosen or
// by its shortcut with the focus on each button, reaches its action and
// changes nothing a player or the game could see.
TEST_F(MenuBarTest, EditCommandsAndTheirShortcutsChangeNothing) {
  Open();
  QMainWindow* top = window->TopLevel();
  top->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(top));
  for (int i = 0; i < 5; ++i) Press();
  Tick();  // black: a stray tick would show as white
  const Snapshot before = Look();
  for (const tables::MenuRow& row : tables::kMenu) {
    if (row.parent != "EditMenu") continue;
    QAction* action = ImplicitMainMenuBar().Child("EditMenu")->Child(tk::String(row.name))->_Shown().at(0);
    QSignalSpy fired(action, &QAction::triggered);
    action->trigger();
    for (const char* button : {"PushButton1", "PushButton2", "PushButton3"}) {
      QWidget* focus = tk::CheckCast<tk::PushButton>(window->ControlByName(button))->Widget();
      focus->setFocus();
      if (!row.shortcut.empty()) QTest::keySequence(focus, KeyOf(row));
    }
    EXPECT_EQ(fired.size(), row.shortcut.empty() ? 1 : 4) << row.name << ": not every shortcut reached the menu";
    EXPECT_EQ(Look(), before) << row.name;
  }
}

// The real start-up: the bar exists once, it is the application's and the
// window's, the content area keeps its size under it, and the run ends with
// status 0.
TEST(StartUp, OneMenuBarForTheApplicationAndTheWindow) {
  tk::MenuBar* application = nullptr;
  tk::MenuBar* ofWindow = nullptr;
  QSize content;
  int barBottom = -1, contentTop = -1;
  QTimer::singleShot(0, [&] {
    application = tk::ApplicationMenuBar();
    Window1& w = ImplicitWindow1();
    ofWindow = w.GetMenuBar();
    content = w.Content()->size();
    barBottom = w.TopLevel()->menuBar()->geometry().bottom();
    contentTop = w.Content()->geometry().top();
    QCoreApplication::exit(0);
  });
  char name[] = "calloquin";
  char* argv[] = {name, nullptr};
  EXPECT_EQ(shell::main(1, argv), 0);
  EXPECT_EQ(application, &ImplicitMainMenuBar());
  EXPECT_EQ(ofWindow, application);
  EXPECT_EQ(content, QSize(1036, 572));
  EXPECT_LT(barBottom, contentTop) << "the menu bar must lie above the content area";
}

}  // namespace
}  // namespace testgame
