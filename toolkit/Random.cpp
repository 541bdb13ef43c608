#include "toolkit/Random.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <utility>

#if defined(__linux__)
#include <sys/random.h>
#elif defined(__APPLE__)
#include <stdlib.h>
#endif

#include "toolkit/Exceptions.h"
#include "toolkit/Hook.h"

namespace tk {
namespace {

class SystemEntropy final : public EntropySource {
 public:
  std::uint64_t Next64() override {
    // Read a block at a time: one draw needs about 460 words, and a system
    // call per word would be wasteful. Each object has its own block.
    if (next_ == buffer_.size()) Refill();
    return buffer_[next_++];
  }

 private:
  void Refill() {
    auto* bytes = reinterpret_cast<unsigned char*>(buffer_.data());
    std::size_t want = sizeof(buffer_);
#if defined(__linux__)
    while (want > 0) {
      const ssize_t got = getrandom(bytes, want, 0);
      if (got < 0) {
        if (errno == EINTR) continue;
        throw RuntimeException(std::string("The system random generator failed: ") + std::strerror(errno));
      }
      bytes += got;
      want -= static_cast<std::size_t>(got);
    }
#elif defined(__APPLE__)
    arc4random_buf(bytes, want);
#else
#error "No system random generator for this platform"
#endif
    next_ = 0;
  }

  std::array<std::uint64_t, 128> buffer_{};
  std::size_t next_ = buffer_.size();
};

constinit Hook<Random::SourceFactory> factory;

}  // namespace

std::unique_ptr<EntropySource> MakeSystemEntropy() { return std::make_unique<SystemEntropy>(); }

Random::Random() : source_(factory ? factory() : MakeSystemEntropy()) {}

Random::SourceFactory Random::SetSourceFactory(SourceFactory replacement) {
  return factory.Set(std::move(replacement));
}

Integer Random::InRange(Integer min, Integer max) {
  if (max < min) std::swap(min, max);
  const std::uint64_t span = static_cast<std::uint64_t>(max) - static_cast<std::uint64_t>(min);
  if (span == std::numeric_limits<std::uint64_t>::max()) return static_cast<Integer>(source_->Next64());
  const std::uint64_t range = span + 1;
  // The largest multiple of range that fits: words at or above it would
  // favour the low results, so they are drawn again.
  const std::uint64_t limit = std::numeric_limits<std::uint64_t>::max() - (std::numeric_limits<std::uint64_t>::max() % range + 1) % range;
  std::uint64_t word;
  do {
    word = source_->Next64();
  } while (word > limit);
  return static_cast<Integer>(static_cast<std::uint64_t>(min) + word % range);
}

}  // namespace tk
