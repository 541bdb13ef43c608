// Starting a game: the window's opening, RESET, and the reset itself.
#include "caller/CallTable.h"
#include "engine/Colours.h"
#include "engine/Module1.h"
#include "toolkit/MsgBox.h"
#include "toolkit/Strings.h"
#include "window/Window1.h"

using namespace Module1;
using colours::kCellGrey;


// Puts the display and the numbers back to the start of a game and lays a
// new draw. It leaves alone what is not the numbers': the flash, the colour
// of the big number and the caller, so a reset during the flash keeps "0"
// blinking until the next press.
void Window1::NumbersReset() {
  MainNumber()->SetText("0");
  LastNumber()->SetText("0");
  LastNumber1()->SetText("0");
  LastNumber2()->SetText("0");
  NumbersGone()->SetText("0");
  for (tk::Integer i = 1; i <= 90; ++i) {
    n1(i - 1)->SetText(tk::Str(i));  // the layout's cells all say "88"
    n1(i - 1)->SetTextColor(kCellGrey);
    tk::RuntimeBackgroundTask();
  }
  HowManyNumbersGone = 0;
  n = 0;
  for (tk::Integer i = 0; i <= 89; ++i) {
    thearray.Set(i, false);
    bingonumbers.Set(i, 0);
    tk::RuntimeBackgroundTask();
  }
  Label3()->SetText("Ok- Lets start a new game");
  StoreTheRandomNumbers();
}

// RESET asks first; No means carry on exactly where the game stands.
void Window1::PushButton3_Action(tk::PushButton& /*sender*/) {
  const tk::Integer answer = tk::MsgBox("RESET - Are you sure?", tk::kMsgBoxYesNo + tk::kMsgBoxQuestion, "");
  if (answer == tk::kAnswerYes) NumbersReset();
}

void Window1::Event_Open() {
  Timer1()->SetEnabled(false);  // the layout leaves the flash timer running
  nickname = tk::Split(caller::kNicknameText, ",");
  Bingo_Caller = false;  // agrees with the layout's "BINGO CALLER - OFF"
  NumbersReset();
}
