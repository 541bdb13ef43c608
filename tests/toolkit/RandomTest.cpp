// Random.InRange: inclusive at both ends and free of modulo bias.
#include <gtest/gtest.h>

#include <deque>
#include <limits>

#include "toolkit/Random.h"
#include "toolkit/ScopedHook.h"

namespace {

struct Words : tk::EntropySource {
  explicit Words(std::deque<std::uint64_t> w) : words(std::move(w)) {}
  std::uint64_t Next64() override {
    const std::uint64_t w = words.front();
    words.pop_front();
    return w;
  }
  std::deque<std::uint64_t> words;
};

TEST(Random, WordsThatWouldFavourLowResultsAreDrawnAgain) {
  // 2^64 leaves a remainder of 16 over 90: the top 16 words are rejected.
  constexpr std::uint64_t kMax = std::numeric_limits<std::uint64_t>::max(), firstRejected = kMax - 15;
  const tk::ScopedHook source(tk::Random::SetSourceFactory, [&]() -> std::unique_ptr<tk::EntropySource> {
    return std::make_unique<Words>(std::deque<std::uint64_t>{kMax, firstRejected, firstRejected - 1, 5});
  });
  tk::Random random;
  EXPECT_EQ(random.InRange(0, 89), static_cast<tk::Integer>((firstRejected - 1) % 90));
  EXPECT_EQ(random.InRange(0, 89), 5);
}

// The game's own range, 0 to 89, is walked by the fairness suite's draws.
TEST(Random, DegenerateAndWholeRangesNeedNoRejection) {
  tk::Random random;
  EXPECT_EQ(random.InRange(4, 4), 4);
  EXPECT_EQ(random.InRange(-3, -3), -3);
  EXPECT_NO_THROW(random.InRange(std::numeric_limits<tk::Integer>::min(), std::numeric_limits<tk::Integer>::max()));
}

}  // namespace
