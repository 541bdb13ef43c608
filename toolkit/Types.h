#pragma once
// Value types that cross the toolkit boundary. The game code speaks in these,
// never in Qt's types.
#include <cstdint>
#include <string>

namespace tk {

using Integer = std::int64_t;
using String = std::string;  // UTF-8 throughout

// 0x00RRGGBB: red in bits 16-23, top byte always 0.
using Color = std::uint32_t;

// The Index of a control that belongs to no control set.
inline constexpr Integer kNoIndex = -2147483648LL;

}  // namespace tk
