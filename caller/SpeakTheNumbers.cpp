// Speaking the current number: the clip is chosen by the text of
// MainNumber alone, not by the game's state.
#include "caller/VoiceClips.h"
#include "toolkit/Exceptions.h"
#include "toolkit/Strings.h"
#include "window/Window1.h"

namespace {

// One link of the chain: the label is read afresh, compared as text (so
// "07" or " 7" match nothing), and on a match the clip is started without
// waiting for it. A clip that can't be had fails the press here, with why.
bool SpeakIfCurrent(Window1& window, const char* literal, const tk::Opened<tk::Sound>& (*clip)()) {
  if (tk::RuntimeStringCompare(window.MainNumber()->Text(), literal) != 0) return false;
  const tk::Opened<tk::Sound>& sound = clip();
  if (!sound) throw tk::NilObjectException(sound.WhyNil());
  sound->Play();
  return true;
}

}  // namespace

// Links 1 to 90 in ascending order, each pairing the number's text with its
// own clip; the first match ends the search, and no match does nothing.
void Window1::SpeakTheNumbers() {
#define CALLOQUIN_LINK(k) \
  if (SpeakIfCurrent(*this, #k, caller::vocal##k)) return;
  CALLOQUIN_FOR_EACH_NUMBER(CALLOQUIN_LINK)
#undef CALLOQUIN_LINK
}
