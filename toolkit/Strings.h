#pragma once
// String and number conversions as the game code relies on them.
#include <string_view>
#include <variant>

#include "toolkit/Array.h"
#include "toolkit/Types.h"

namespace tk {

// A box for a value of any kind the game passes around.
using Variant = std::variant<Integer, double, bool, String>;

String Str(Integer value);          // plain decimal digits: "7", "90", "-3"
String Str(const Variant& value);   // a String in the box comes back unchanged

// The number the text begins with (after leading blanks), 0 if none.
double Val(std::string_view text);

// Element 0 is the text before the first delimiter, each further element the
// text up to the next; the last runs to the end of the source.
Array<String> Split(std::string_view source, std::string_view delimiter);

// The platform's line ending.
String EndOfLine();

// 0 for equal texts, negative or positive otherwise. ASCII letters compare
// without regard to case, as the toolkit's string equality always has.
Integer RuntimeStringCompare(std::string_view a, std::string_view b);

// The yield point at the end of every loop pass. There are no cooperative
// threads, so it does nothing, and it must never pump events: the loops that
// pass it work on the game's state without a guard.
inline void RuntimeBackgroundTask() {}

}  // namespace tk
