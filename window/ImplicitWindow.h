#pragma once
#include "window/Window1.h"

// The window's single instance, built (Layout, CreateControls, Open) at the
// first call.
Window1& ImplicitWindow1();
