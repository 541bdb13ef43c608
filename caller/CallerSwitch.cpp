// BINGO CALLER: the caption is the switch's memory, Bingo_Caller its copy
// for the press of NEXT NUMBER.
#include "engine/Module1.h"
#include "toolkit/Strings.h"
#include "window/Window1.h"

void Window1::PushButton1_Action(tk::PushButton& /*sender*/) {
  // Any caption but exactly the On text counts as Off.
  if (tk::RuntimeStringCompare(PushButton1()->Caption(), "BINGO CALLER - ON") == 0) {
    PushButton1()->SetCaption("BINGO CALLER - OFF");
    Module1::Bingo_Caller = false;
  } else {
    PushButton1()->SetCaption("BINGO CALLER - ON");
    Module1::Bingo_Caller = true;
  }
}
