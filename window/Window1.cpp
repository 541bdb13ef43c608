#include "window/Window1.h"

#include "engine/Colours.h"
#include "shell/BingoOuter1.h"
#include "shell/MainMenuBar.h"
#include "toolkit/PropertyStream.h"
#include "window/Accessibility.h"
#include "window/LayoutData.h"
#include "window/Window1_n1.h"
#include "window/Window1_wrapper_Timer1.h"

namespace {

// Makes a control, registers it under its name, then gives it its stream.
// Everything after the registration goes through the window by name, never
// through the object New handed back.
template <class Made, class Cast>
void MakeControl(Window1& window, const char* name) {
  Made& made = window.New<Made>();
  made.Constructor();
  window.AddControl(name, made);
  tk::SetProperties(*tk::Ref<Cast>(tk::CheckCast<Cast>(window.ControlByName(name))), layout::ControlStream(name));
}

// Binds a handler of the window to the Action of the control of that name.
// The call through the member pointer stays virtual.
template <class Sender>
void BindAction(Window1& window, const char* name, void (Window1::*handler)(Sender&)) {
  tk::Ref<Sender> sender = tk::CheckCast<Sender>(window.ControlByName(name));
  sender->AddActionHandler([&window, handler](Sender& s) { (window.*handler)(s); });
}

}  // namespace

Window1::~Window1() = default;

void Window1::Layout() {
  SetBackdrop(shell::BingoOuter1());
  SetMenuBar(&ImplicitMainMenuBar());  // the same bar as the application's
  // Size, title and buttons come after picture and menu bar.
  tk::SetProperties(*this, layout::WindowStream());
}

// The 102 controls in their fixed order, which is also their stacking order:
// each lies over those made before it. PushButton3 follows its parent
// MainNumber at once; LastNumber1 and LastNumber2 come after the whole board.
void Window1::CreateControls() {
  MakeControl<tk::Label, tk::Label>(*this, "MainNumber");
  MakeControl<tk::PushButton, tk::PushButton>(*this, "PushButton3");
  BindAction(*this, "PushButton3", &Window1::PushButton3_Action);
  MakeControl<tk::Label, tk::Label>(*this, "LastNumber");
  MakeControl<tk::Label, tk::Label>(*this, "NumbersGone");
  MakeControl<tk::Label, tk::Label>(*this, "Label1");
  MakeControl<tk::Label, tk::Label>(*this, "Label2");
  MakeControl<tk::Label, tk::Label>(*this, "Label3");
  MakeControl<tk::PushButton, tk::PushButton>(*this, "PushButton1");
  BindAction(*this, "PushButton1", &Window1::PushButton1_Action);
  MakeControl<tk::PushButton, tk::PushButton>(*this, "PushButton2");
  BindAction(*this, "PushButton2", &Window1::PushButton2_Action);

  // The board: a cell's index goes to its constructor, to the fetch and in
  // its stream, and all three agree.
  for (tk::Integer i = 0; i < 90; ++i) {
    Window1_n1& cell = New<Window1_n1>();
    cell.Constructor(i);
    AddControl("n1", cell);
    tk::SetProperties(*tk::Ref<tk::Label>(tk::CheckCast<tk::Label>(ControlByNameIndex("n1", i))), layout::CellStream(i));
  }

  MakeControl<tk::Label, tk::Label>(*this, "LastNumber1");
  MakeControl<tk::Label, tk::Label>(*this, "LastNumber2");
  MakeControl<Window1_wrapper_Timer1, tk::Timer>(*this, "Timer1");
  BindAction(*this, "Timer1", &Window1::Timer1_Action);
  DescribeControls(*this);
}

// One tick of the flash. Its phase is the colour itself: only exact white
// goes to black, anything else (the layout's near-white too) goes to white.
void Window1::Timer1_Action(tk::Timer& /*sender*/) {
  if (MainNumber()->TextColor() == colours::kWhite) {
    MainNumber()->SetTextColor(colours::kBlack);
  } else {
    MainNumber()->SetTextColor(colours::kWhite);
  }
}
