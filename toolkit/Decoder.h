#pragma once
// Turns a sound file into the samples the output plays: 16-bit signed mono
// at the mixer's rate, decoded whole when the clip is opened. It needs no
// output at all, so that whether a clip can be played is known in the
// press that opens it, whatever the desktop's sound is doing.
#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

#include "toolkit/Types.h"

namespace tk::sound {

using Samples = std::shared_ptr<const std::vector<std::int16_t>>;

struct DecodeError {
  String why;     // in the operator's words
  String detail;  // the decoder's or the loader's own
  bool noLibrary = false;
};

std::variant<Samples, DecodeError> Decode(const String& path);

}  // namespace tk::sound
