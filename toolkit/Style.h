#pragma once
// The application's look: the platform's widget style, with one icon made
// only when it is first drawn, and the ordinary text size for everything.

namespace tk {

// Installs it; called once, right after the application object is made.
void UseAppStyle();

}  // namespace tk
