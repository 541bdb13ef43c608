#include "window/Accessibility.h"

#include "engine/Colours.h"
#include "toolkit/Strings.h"
#include "window/Window1.h"

namespace {

// A label whose name says what it is and whose description is what it shows.
void DescribeByText(tk::Ref<tk::Label> label, const char* name) {
  label->SetAccessibleName(name);
  label->SetAccessibleDescription(label->Text());
  label->SetChangeHandler([](tk::Label& l) { l.SetAccessibleDescription(l.Text()); });
}

}  // namespace

void DescribeControls(Window1& window) {
  window.MainNumber()->SetAccessibleName("Current number");
  DescribeByText(window.LastNumber(), "Previous number");
  DescribeByText(window.LastNumber1(), "Second previous number");
  DescribeByText(window.LastNumber2(), "Third previous number");
  DescribeByText(window.NumbersGone(), "Numbers gone");
  // The two headings are their own names.
  window.Label1()->SetAccessibleName(window.Label1()->Text());
  window.Label2()->SetAccessibleName(window.Label2()->Text());

  // The call is written after the number, so this is the moment both stand:
  // the current number carries "<number>, <call>" and is announced with it.
  // Before the first number of a game it carries the call label's greeting.
  window.Label3()->SetAccessibleName("Call");
  window.Label3()->SetChangeHandler([&window](tk::Label& call) {
    call.SetAccessibleDescription(call.Text());
    tk::Ref<tk::Label> current = window.MainNumber();
    const bool none = tk::Val(current->Text()) < 1.0;
    current->SetAccessibleDescription(none ? call.Text() : current->Text() + ", " + call.Text());
    // Each call is spoken as it comes, after whatever the reader is saying.
    if (!none) current->Announce(current->AccessibleDescription());
  });

  // A cell's number is its place on the board; its colour says if it is called.
  for (tk::Integer i = 0; i < 90; ++i) {
    tk::Ref<tk::Label> cell = window.n1(i);
    auto describe = [number = tk::Str(i + 1)](tk::Label& c) {
      c.SetAccessibleName("Number " + number + (c.TextColor() == colours::kCalledYellow ? ", called" : ", not called"));
    };
    describe(*cell);
    cell->SetChangeHandler(describe);
  }
}
