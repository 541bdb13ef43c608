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
#include "window/ImplicitWindow.h"

namespace testgame {
namespace {

struct Row {
  const char* name;
  const char* text;
  QKeySequence key;
};

const std::vector<std::pair<Row, std::vector<Row>>> kBar = {
    {{"FileMenu", "&File", {}}, {{"FileQuit", "&Quit", QKeySequence(Qt::CTRL | Qt::Key_Q)}}},
    {{"EditMenu", "&Edit", {}},
     {{"EditUndo", "&Undo", QKeySequence(Qt::CTRL | Qt::Key_Z)},
      {"EditSeparator1", "-", {}},
      {"EditCut", "Cu&t", QKeySequence(Qt::CTRL | Qt::Key_X)},
      {"EditCopy", "&Copy", QKeySequence(Qt::CTRL | Qt::Key_C)},
      {"EditPaste", "&Paste", QKeySequence(Qt::CTRL | Qt::Key_V)},
      {"EditClear", "&Delete", {}},
      {"EditSeparator2", "-", {}},
      {"EditSelectAll", "Select &All", QKeySequence(Qt::CTRL | Qt::Key_A)}}},
};

// The window shows exactly the table, in order, and each shown action
// belongs to the item of that row.
TEST_F(GameTest, TheWindowShowsFileThenEditExactlyAsBuilt) {
  Open();
  const QList<QAction*> menus = window->TopLevel()->menuBar()->actions();
  ASSERT_EQ(menus.size(), 2);
  tk::MenuBar& bar = ImplicitMainMenuBar();
  for (std::size_t m = 0; m < kBar.size(); ++m) {
    const auto& [head, rows] = kBar[m];
    EXPECT_EQ(menus[m]->text(), head.text);
    EXPECT_EQ(bar.Item(m)->Name(), head.name);
    const QList<QAction*> items = menus[m]->menu<QMenu*>()->actions();
    ASSERT_EQ(items.size(), static_cast<qsizetype>(rows.size())) << head.name;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      tk::MenuItem& item = *bar._Lookup(rows[i].name);
      EXPECT_EQ(item._Shown(), std::vector<QAction*>{items[i]}) << rows[i].name;
      EXPECT_EQ(items[i]->isSeparator() ? QStringLiteral("-") : items[i]->text(), rows[i].text) << rows[i].name;
      EXPECT_EQ(items[i]->shortcut(), rows[i].key) << rows[i].name;
      EXPECT_TRUE(items[i]->isVisible() && items[i]->isEnabled());
    }
  }
  EXPECT_EQ(bar.Count(), 2) << "the bar was built more than once";
}

// The bar's button for menus that don't fit gets its icon only when it is
// drawn, and then it is the platform style's own.
TEST_F(GameTest, TheOverflowButtonShowsTheStylesOwnIcon) {
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
TEST_F(GameTest, EditCommandsAndTheirShortcutsChangeNothing) {
  Open();
  QMainWindow* top = window->TopLevel();
  top->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(top));
  for (int i = 0; i < 5; ++i) Press();
  Tick();  // black: a stray tick would show as white
  const Snapshot before = Look();
  for (const Row& row : kBar[1].second) {
    QAction* action = window->EditMenu()->Child(row.name)->_Shown().at(0);
    QSignalSpy fired(action, &QAction::triggered);
    action->trigger();
    for (const char* button : {"PushButton1", "PushButton2", "PushButton3"}) {
      QWidget* focus = tk::CheckCast<tk::PushButton>(window->ControlByName(button))->Widget();
      focus->setFocus();
      if (!row.key.isEmpty()) QTest::keySequence(focus, row.key);
    }
    EXPECT_EQ(fired.size(), row.key.isEmpty() ? 1 : 4) << row.name << ": not every shortcut reached the menu";
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
  EXPECT_EQ(ImplicitMainMenuBar().Count(), 2);
  EXPECT_EQ(content, QSize(1036, 572));
  EXPECT_LT(barBottom, contentTop) << "the menu bar must lie above the content area";
}

}  // namespace
}  // namespace testgame
