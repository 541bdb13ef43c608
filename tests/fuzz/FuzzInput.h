#pragma once
// An input is one byte that picks the class, then the stream.
#include <cstdint>

namespace fuzz {
enum Class : std::uint8_t { kWindow, kLabel, kPushButton, kTimer, kClassCount };
}
