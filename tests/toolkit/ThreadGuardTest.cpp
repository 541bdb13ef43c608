// The thread guard: windows, controls, menus and dialogs refuse a thread
// with the one exact message and stay as they were; timers, sounds, files,
// random numbers and strings carry no guard and work from any thread.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QTest>

#include <functional>
#include <thread>

#include "toolkit/FolderItem.h"
#include "toolkit/Label.h"
#include "toolkit/Menu.h"
#include "toolkit/MsgBox.h"
#include "toolkit/PushButton.h"
#include "toolkit/Random.h"
#include "toolkit/Strings.h"
#include "toolkit/Timer.h"
#include "toolkit/Window.h"
#include "toolkit/ScopedHook.h"

namespace {

const char* const kRefused =
    "A thread has attempted to manipulate a user interface element. This can only be done from the "
    "application's main thread.";

// Runs work on a thread of its own; what it raised, or "" if nothing.
std::string OnAThread(const std::function<void()>& work) {
  std::string raised;
  std::thread([&] {
    try {
      work();
    } catch (const tk::ThreadAccessingUIException& e) {
      raised = e.Message;
    } catch (const std::exception& e) {
      raised = std::string("another failure: ") + e.what();
    }
  }).join();
  return raised;
}

TEST(ThreadGuard, ALabelAButtonTheWindowAndItsMenusRefuseAThreadAndStayAsTheyWere) {
  tk::Label label;
  label.SetText("7");
  label.SetTextColor(0xFFFF00);
  tk::PushButton button;
  button.SetCaption("BINGO CALLER - OFF");
  tk::Window window;
  tk::Label& stray = window.New<tk::Label>();
  tk::MenuBar bar;
  bool asked = false;
  const tk::ScopedHook answerer(tk::SetMsgBoxAnswerer, [&](const tk::String&, tk::Integer, const tk::String&) {
    asked = true;
    return tk::kAnswerYes;
  });
  const auto widgets = QApplication::allWidgets().size();

  for (const auto& work : std::initializer_list<std::function<void()>>{
           [&] { label.SetText("48"); }, [&] { label.SetTextColor(0xFFFFFF); }, [&] { (void)label.Text(); },
           [&] { (void)label.TextColor(); }, [&] { button.SetCaption("BINGO CALLER - ON"); },
           [&] { (void)button.Caption(); }, [&] { tk::Label made; }, [&] { tk::Window made; },
           [&] { window.AddControl("Stray", stray); }, [&] { window.SetMenuBar(&bar); },
           [&] { (void)window.GetMenuBar(); }, [&] { bar.Append(std::make_unique<tk::MenuItem>()); },
           [&] { (void)tk::MsgBox("New Game?", tk::kMsgBoxYesNo + tk::kMsgBoxQuestion, ""); }}) {
    EXPECT_EQ(OnAThread(work), kRefused);
  }

  EXPECT_EQ(label.Text(), "7");
  EXPECT_EQ(static_cast<QLabel*>(label.Widget())->text().toStdString(), "7");
  EXPECT_EQ(label.TextColor(), 0xFFFF00u);
  EXPECT_EQ(button.Caption(), "BINGO CALLER - OFF");
  EXPECT_EQ(static_cast<QPushButton*>(button.Widget())->text().toStdString(), "BINGO CALLER - OFF");
  EXPECT_EQ(window.ControlByName("Stray"), nullptr);
  EXPECT_EQ(window.GetMenuBar(), nullptr);
  EXPECT_EQ(window.TopLevel()->menuWidget(), nullptr);
  EXPECT_EQ(bar.Count(), 0);
  EXPECT_FALSE(asked);
  EXPECT_EQ(QApplication::allWidgets().size(), widgets) << "a thread made a widget";
}

TEST(ThreadGuard, TimersSoundsFilesRandomNumbersAndStringsWorkFromAThread) {
  tk::Timer timer;
  timer.SetEnabled(false);
  timer.SetPeriod(5);
  timer.SetMode(tk::Timer::kModeMultiple);
  int ticks = 0;
  timer.AddActionHandler([&](tk::Timer&) { ++ticks; });

  std::shared_ptr<tk::Sound> clip;
  tk::Integer drawn = 0;
  tk::String text;
  EXPECT_EQ(OnAThread([&] {
              timer.SetEnabled(true);
              auto folder = std::make_shared<tk::FolderItem>(CALLOQUIN_VOICE_FIXTURES);
              clip = folder->Child("tone440.mp3")->OpenAsSound();
              if (clip) clip->Play();
              drawn = tk::Random().InRange(1, 90);
              text = tk::Str(drawn) + " " + tk::Split("a,b", ",")(1);
            }),
            "");
  // The timer ticks on the main thread, once its event loop runs.
  EXPECT_TRUE(QTest::qWaitFor([&] { return ticks >= 2; }, 5000));
  EXPECT_EQ(OnAThread([&] { timer.SetEnabled(false); }), "");
  EXPECT_TRUE(QTest::qWaitFor([&] { return !timer.IsRunning(); }, 5000));
  EXPECT_NE(clip, nullptr);
  EXPECT_GE(drawn, 1);
  EXPECT_LE(drawn, 90);
  EXPECT_EQ(text, std::to_string(drawn) + " b");
}

}  // namespace
