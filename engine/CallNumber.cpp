// One press of NEXT NUMBER: the heart of play.
#include "engine/Colours.h"
#include "engine/Module1.h"
#include "toolkit/Application.h"
#include "toolkit/MsgBox.h"
#include "toolkit/Strings.h"
#include "window/Window1.h"

using namespace Module1;
using colours::kCalledYellow;
using colours::kWhite;

namespace {
// The flash belongs to the fifth number of a game alone.
constexpr tk::Integer kFlashingPress = 4;
}  // namespace

// Every step in a fixed order. The current number is read from the draw
// once, into MainNumber; from there on it is known only as that text, which
// the cell, the call and the voice all read back.
void Window1::PushButton2_Action(tk::PushButton& /*sender*/) {
  const tk::Integer H = HowManyNumbersGone;

  MainNumber()->SetText(tk::Str(bingonumbers(H)));
  NumbersGone()->SetText(tk::Str(H + 1));

  if (H == kFlashingPress) {
    Timer1()->SetEnabled(true);  // white now; the first tick turns it black
  } else {
    Timer1()->SetEnabled(false);
    MainNumber()->SetTextColor(kWhite);  // also ends a flash caught at black
  }

  const auto x = static_cast<tk::Integer>(tk::Val(MainNumber()->Text()));
  n1(x - 1)->SetTextColor(kCalledYellow);

  // Read from the draw, not shifted along from label to label.
  LastNumber()->SetText(H > 0 ? tk::Str(bingonumbers(H - 1)) : "0");
  LastNumber1()->SetText(H > 1 ? tk::Str(bingonumbers(H - 2)) : "0");
  LastNumber2()->SetText(H > 2 ? tk::Str(bingonumbers(H - 3)) : "0");

  const auto i = static_cast<tk::Integer>(tk::Val(MainNumber()->Text()) - 1.0);
  Label3()->SetText(tk::Str(tk::Variant(nickname(i))));

  // A clip that can't be had fails here, before the count moves: the number
  // stays on show and the next press calls it again.
  if (Bingo_Caller) SpeakTheNumbers();

  HowManyNumbersGone = H + 1;

  if (HowManyNumbersGone > 89) {
    const tk::String question = "All 90 have numbers gone?" + tk::EndOfLine() + "New Game? - Yes/No";
    const tk::Integer answer = tk::MsgBox(question, tk::kMsgBoxYesNo + tk::kMsgBoxQuestion, "");
    if (answer == tk::kAnswerYes) {
      NumbersReset();
    } else if (answer == tk::kAnswerNo) {
      tk::Quit(0);
    }
  }
}
