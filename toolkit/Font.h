#pragma once
// Turns the font properties shared by labels and buttons into a Qt font.
#include <QFont>

#include "toolkit/Control.h"

namespace tk {

QFont MakeFont(const String& family, double pixels, bool bold, bool italic, bool underline);

}  // namespace tk
