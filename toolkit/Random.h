#pragma once
// Random integers for the draw. Every Random reads the operating system's
// cryptographically secure generator directly, so no two objects, games or
// runs share a sequence and no order can be predicted from earlier ones.
// Tests may replace the entropy source; nothing in the product does.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

#include "toolkit/Types.h"

namespace tk {

// Where random bits come from.
class EntropySource {
 public:
  virtual ~EntropySource() = default;
  virtual std::uint64_t Next64() = 0;
};

// The operating system's CSPRNG (getrandom on Linux, arc4random on macOS).
std::unique_ptr<EntropySource> MakeSystemEntropy();

class Random {
 public:
  Random();  // takes a fresh source from the current factory

  // A uniformly distributed integer from min to max, both ends included,
  // free of modulo bias (values that would favour low results are redrawn).
  Integer InRange(Integer min, Integer max);

  using SourceFactory = std::function<std::unique_ptr<EntropySource>()>;
  // Replaces how new objects get their source; returns the previous factory.
  // An empty factory restores the system source.
  static SourceFactory SetSourceFactory(SourceFactory factory);

 private:
  std::unique_ptr<EntropySource> source_;
};

}  // namespace tk
