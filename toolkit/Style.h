#pragma once
// The application's widget style: the platform's own, with one icon made
// only when it is first drawn.

namespace tk {

// Installs it; called once, right after the application object is made.
void UseAppStyle();

}  // namespace tk
