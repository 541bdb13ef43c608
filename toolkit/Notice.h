#pragma once
// A notice: news the operator should see once, which asks nothing and holds
// nothing up. It stands beside the window without taking the keyboard, so
// the key that calls the numbers goes on calling them; its OK closes it.
#include <functional>

#include "toolkit/Types.h"

namespace tk {

void ShowNotice(const String& text, const String& informative);

// Tests see notices instead of a person. Returns the previous shower; an
// empty one restores the real notice.
using NoticeShower = std::function<void(const String& text, const String& informative)>;
NoticeShower SetNoticeShower(NoticeShower shower);

}  // namespace tk
