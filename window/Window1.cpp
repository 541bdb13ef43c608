#include "window/Window1.h"

#include "shell/MainMenuBar.h"
#include "toolkit/Picture.h"
#include "window/LayoutData.h"

namespace {

void ApplyLabel(tk::Label& label, const layout::LabelLayout& l) {
  label.SetBold(l.bold);
  label.SetTextSize(l.textSize);
  label.SetTextFont("System");
  label.SetTransparent(true);
  label.SetSelectable(false);
  label.SetMultiline(false);
  label.SetTextColor(l.textColor);
  label.SetTextAlign(1);
  label.SetText(l.text);
  label.SetTabIndex(l.tabIndex);
  label.SetHeight(l.height);
  label.SetWidth(l.width);
  label.SetTop(l.top);
  label.SetLeft(l.left);
  label.SetIndex(l.index);
}

void ApplyButton(tk::PushButton& button, const layout::ButtonLayout& b) {
  button.SetInitialParent(b.initialParent);
  button.SetTextFont("System");
  button.SetButtonStyle(b.buttonStyle);
  button.SetDefault(b.isDefault);
  button.SetCaption(b.caption);
  button.SetTabIndex(b.tabIndex);
  button.SetHeight(b.height);
  button.SetWidth(b.width);
  button.SetTop(b.top);
  button.SetLeft(b.left);
}

}  // namespace

Window1::~Window1() = default;

void Window1::Layout() {
  SetBackdrop(tk::Picture::OpenFromApp("BingoOuter1"));
  SetMenuBar(&ImplicitMainMenuBar());  // the same bar as the application's
  SetWidth(layout::kWindowWidth);
  SetHeight(layout::kWindowHeight);
  SetTitle(layout::kWindowTitle);
  SetCloseButton(false);
  SetResizeable(false);
  SetMaximizeButton(false);
  SetMinimizeButton(true);
  SetFullScreenButton(false);
  SetHasBackColor(false);
  SetBackColor(0xFFFFFF);
  SetVisible(true);
}

// Every control is registered by name first, then fetched back by name and
// given its properties; handlers are bound right after their control.
void Window1::CreateControls() {
  for (const layout::Entry& e : layout::CreationOrder()) {
    switch (e.kind) {
      case layout::Kind::Label: {
        const auto& l = layout::Labels()[static_cast<std::size_t>(e.which)];
        AddControl(l.name, New<tk::Label>());
        ApplyLabel(*tk::CheckCast<tk::Label>(ControlByName(l.name)), l);
        break;
      }
      case layout::Kind::Cell: {
        auto& cell = New<tk::Label>();
        cell.SetIndex(e.which);
        AddControl("n1", cell);
        ApplyLabel(*tk::CheckCast<tk::Label>(ControlByNameIndex("n1", e.which)), layout::Cell(e.which));
        break;
      }
      case layout::Kind::Button: {
        const auto& b = layout::Buttons()[static_cast<std::size_t>(e.which)];
        AddControl(b.name, New<tk::PushButton>());
        auto& button = *tk::CheckCast<tk::PushButton>(ControlByName(b.name));
        ApplyButton(button, b);
        const std::string name = b.name;
        if (name == "PushButton1") button.AddActionHandler([this](tk::PushButton& s) { PushButton1_Action(s); });
        if (name == "PushButton2") button.AddActionHandler([this](tk::PushButton& s) { PushButton2_Action(s); });
        if (name == "PushButton3") button.AddActionHandler([this](tk::PushButton& s) { PushButton3_Action(s); });
        break;
      }
      case layout::Kind::Timer: {
        AddControl("Timer1", New<tk::Timer>());
        auto& timer = *tk::CheckCast<tk::Timer>(ControlByName("Timer1"));
        timer.SetPeriod(layout::kTimerPeriod);
        timer.SetMode(layout::kTimerMode);
        timer.AddActionHandler([this](tk::Timer& s) { Timer1_Action(s); });
        break;
      }
    }
  }
}

// One tick of the flash. Its phase is the colour itself: only exact white
// goes to black, anything else (the layout's near-white too) goes to white.
void Window1::Timer1_Action(tk::Timer& /*sender*/) {
  if (MainNumber()->TextColor() == 0xFFFFFF) {
    MainNumber()->SetTextColor(0x000000);
  } else {
    MainNumber()->SetTextColor(0xFFFFFF);
  }
}
