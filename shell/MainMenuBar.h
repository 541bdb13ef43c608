#pragma once
// The application's one menu bar: the stock File and Edit menus. Every game
// command is a button on the window; of the menus only Quit does anything,
// and what it does comes from the toolkit.
#include "toolkit/Menu.h"

class MainMenuBar : public tk::MenuBar {
 public:
  const char* ClassName() const override { return "MainMenuBar"; }
  // Builds File, then Edit, each item on screen in the order it is made.
  void Constructor();
};

// The one instance, built at the first call. It is kept only once it is
// whole: a failed build leaves nothing behind and the next call tries again.
MainMenuBar& ImplicitMainMenuBar();
