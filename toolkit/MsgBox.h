#pragma once
// The modal yes/no question. Style 36 is Yes and No with the question icon,
// Yes being the default; the answer is 6 for Yes and 7 for No.
#include <functional>

#include "toolkit/Types.h"

namespace tk {

inline constexpr Integer kMsgBoxYesNo = 4;
inline constexpr Integer kMsgBoxQuestion = 32;
inline constexpr Integer kAnswerYes = 6;
inline constexpr Integer kAnswerNo = 7;

Integer MsgBox(const String& text, Integer style, const String& title);

// Tests answer the question instead of a person. Returns the previous
// answerer; an empty one restores the real dialog.
using MsgBoxAnswerer = std::function<Integer(const String& text, Integer style, const String& title)>;
MsgBoxAnswerer SetMsgBoxAnswerer(MsgBoxAnswerer answerer);

}  // namespace tk
