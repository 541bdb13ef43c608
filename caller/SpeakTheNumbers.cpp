// Speaking the current number: not yet wired to the voice clips.
#include "window/Window1.h"

void Window1::SpeakTheNumbers() {}
