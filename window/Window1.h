#pragma once
// The one window. It keeps no state of its own: the game lives in Module1
// and in its controls' texts and colours, and every control is looked up
// by name at each use.
#include "toolkit/Label.h"
#include "toolkit/Menu.h"
#include "toolkit/PushButton.h"
#include "toolkit/Ref.h"
#include "toolkit/Timer.h"
#include "toolkit/Window.h"

class Window1 : public tk::Window {
 public:
  // Defined in window/, so that the class's table of virtual methods lives
  // with the layer that links all of them.
  ~Window1() override;
  const char* ClassName() const override { return "Window1.Window1"; }

  // Control accessors.
  tk::Ref<tk::Label> MainNumber() { return Find<tk::Label>("MainNumber"); }
  tk::Ref<tk::PushButton> PushButton3() { return Find<tk::PushButton>("PushButton3"); }
  tk::Ref<tk::Label> LastNumber() { return Find<tk::Label>("LastNumber"); }
  tk::Ref<tk::Label> NumbersGone() { return Find<tk::Label>("NumbersGone"); }
  tk::Ref<tk::Label> Label1() { return Find<tk::Label>("Label1"); }
  tk::Ref<tk::Label> Label2() { return Find<tk::Label>("Label2"); }
  tk::Ref<tk::Label> Label3() { return Find<tk::Label>("Label3"); }
  tk::Ref<tk::PushButton> PushButton1() { return Find<tk::PushButton>("PushButton1"); }
  tk::Ref<tk::PushButton> PushButton2() { return Find<tk::PushButton>("PushButton2"); }
  // The board cell of number index + 1.
  tk::Ref<tk::Label> n1(tk::Integer index) { return tk::CheckCast<tk::Label>(ControlByNameIndex("n1", index)); }
  tk::Ref<tk::Label> LastNumber1() { return Find<tk::Label>("LastNumber1"); }
  tk::Ref<tk::Label> LastNumber2() { return Find<tk::Label>("LastNumber2"); }
  tk::Ref<tk::Timer> Timer1() { return Find<tk::Timer>("Timer1"); }

  // Action handlers.
  virtual void PushButton3_Action(tk::PushButton& sender);  // RESET
  virtual void PushButton1_Action(tk::PushButton& sender);  // BINGO CALLER
  virtual void PushButton2_Action(tk::PushButton& sender);  // NEXT NUMBER
  virtual void Timer1_Action(tk::Timer& sender);            // the flash

  // Menu accessors: the items of the window's menu bar, looked up by name
  // at each use. Nothing of the game calls them; they are how the window
  // reaches its menu items.
  tk::Ref<tk::MenuItem> EditMenu() { return tk::WindowMenuItem<tk::MenuItem>(*this, "EditMenu"); }
  tk::Ref<tk::MenuItem> EditSelectAll() { return tk::WindowMenuItem<tk::MenuItem>(*this, "EditSelectAll"); }
  tk::Ref<tk::MenuItem> EditSeparator2() { return tk::WindowMenuItem<tk::MenuItem>(*this, "EditSeparator2"); }
  tk::Ref<tk::MenuItem> EditClear() { return tk::WindowMenuItem<tk::MenuItem>(*this, "EditClear"); }
  tk::Ref<tk::MenuItem> EditPaste() { return tk::WindowMenuItem<tk::MenuItem>(*this, "EditPaste"); }
  tk::Ref<tk::MenuItem> EditCopy() { return tk::WindowMenuItem<tk::MenuItem>(*this, "EditCopy"); }
  tk::Ref<tk::MenuItem> EditCut() { return tk::WindowMenuItem<tk::MenuItem>(*this, "EditCut"); }
  tk::Ref<tk::MenuItem> EditSeparator1() { return tk::WindowMenuItem<tk::MenuItem>(*this, "EditSeparator1"); }
  tk::Ref<tk::MenuItem> EditUndo() { return tk::WindowMenuItem<tk::MenuItem>(*this, "EditUndo"); }
  tk::Ref<tk::MenuItem> FileMenu() { return tk::WindowMenuItem<tk::MenuItem>(*this, "FileMenu"); }
  tk::Ref<tk::QuitMenuItem> FileQuit() { return tk::WindowMenuItem<tk::QuitMenuItem>(*this, "FileQuit"); }

  // Game methods.
  virtual void NumbersReset();
  virtual void SpeakTheNumbers();
  virtual void StoreTheRandomNumbers();

 protected:
  void Layout() override;
  void CreateControls() override;
  void Open() override { Event_Open(); }
  virtual void Event_Open();

 private:
  template <class T>
  tk::Ref<T> Find(const char* name) {
    return tk::CheckCast<T>(ControlByName(name));
  }
};
