// The thread guard: windows, controls, menus and dialogs refuse a thread
// with the one exact message and stay as they were. One of each kind of
// operation shows the rule: a setter, a getter, a construction, a window's
// own call, a menu's, a dialog.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>

#include <functional>
#include <thread>

#include "toolkit/Label.h"
#include "toolkit/Menu.h"
#include "toolkit/MsgBox.h"
#include "toolkit/PushButton.h"
#include "toolkit/ScopedHook.h"
#include "toolkit/Window.h"

namespace {

TEST(ThreadGuard, WidgetsMenusAndDialogsRefuseAThreadAndStayAsTheyWere) {
  tk::Label label;
  label.SetText("7");
  tk::PushButton button;
  tk::Window window;
  tk::MenuBar bar;
  bool asked = false;
  const tk::ScopedHook answerer(tk::SetMsgBoxAnswerer,
                                [&](const tk::String&, tk::Integer, const tk::String&) { return asked = true, tk::kAnswerYes; });
  const auto widgets = QApplication::allWidgets().size();

  for (const auto& work : std::initializer_list<std::function<void()>>{
           [&] { label.SetText("48"); }, [&] { (void)button.Caption(); }, [&] { tk::Window made; },
           [&] { window.SetMenuBar(&bar); }, [&] { bar.Append(std::make_unique<tk::MenuItem>()); },
           [&] { (void)tk::MsgBox("New Game?", tk::kMsgBoxYesNo + tk::kMsgBoxQuestion, ""); }}) {
    std::string raised = "nothing";
    std::thread([&] {
      try {
        work();
      } catch (const tk::ThreadAccessingUIException& e) {
        raised = e.Message;
      }
    }).join();
    EXPECT_EQ(raised,
              "A thread has attempted to manipulate a user interface element. This can only be done from the "
              "application's main thread.");
  }
  EXPECT_EQ(static_cast<QLabel*>(label.Widget())->text().toStdString(), "7");
  EXPECT_EQ(window.GetMenuBar(), nullptr);
  EXPECT_EQ(bar.Count(), 0);
  EXPECT_FALSE(asked);
  EXPECT_EQ(QApplication::allWidgets().size(), widgets) << "a thread made a widget";
}

}  // namespace
