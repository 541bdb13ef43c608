// The draw: rejection sampling over all 90 indices, fed by Random.
#include <cmath>
#include <random>

#include "engine/Module1.h"
#include "tests/game/GameFixture.h"

namespace testgame {
namespace {

// A deterministic generator, so the statistics below cannot flake.
struct SeededEntropy : tk::EntropySource {
  explicit SeededEntropy(std::uint64_t seed) : engine(seed) {}
  std::uint64_t Next64() override { return engine(); }
  std::mt19937_64 engine;
};

// The draw only touches Module1, so it can run on a bare window.
class DrawTest : public GameTest {
 protected:
  void Draw(std::unique_ptr<tk::EntropySource> source) {
    auto* keep = source.release();
    const tk::ScopedHook dictated(tk::Random::SetSourceFactory,
                                  [keep] { return std::unique_ptr<tk::EntropySource>(keep); });
    for (tk::Integer i = 0; i < 90; ++i) Module1::thearray.Set(i, false);
    Module1::HowManyNumbersGone = 0;
    bare_.StoreTheRandomNumbers();
  }
  Window1 bare_;
};

TEST_F(DrawTest, TheOrderIsExactlyWhatTheSourceDictatesRejectionsIncluded) {
  // Candidates already placed are thrown away; a word above the unbiased
  // limit is drawn again inside InRange.
  auto words = std::make_shared<std::deque<std::uint64_t>>(std::deque<std::uint64_t>{6, 6, ~std::uint64_t{0}, 2, 6, 2});
  for (std::uint64_t w = 0; w < 90; ++w) words->push_back(w);
  Draw(std::make_unique<ScriptedEntropy>(words));
  std::vector<tk::Integer> expected = {7, 3};
  for (tk::Integer n = 1; n <= 90; ++n)
    if (n != 7 && n != 3) expected.push_back(n);
  std::vector<tk::Integer> drawn;
  for (tk::Integer i = 0; i < 90; ++i) drawn.push_back(Module1::bingonumbers(i));
  EXPECT_EQ(drawn, expected);
  EXPECT_TRUE(words->empty()) << "every word was used, none skipped";
}

TEST_F(DrawTest, PositionByNumberCountsPassAChiSquareTest) {
  constexpr int kDraws = 9000;  // 100 expected in each of the 8100 cells
  std::vector<std::vector<int>> counts(90, std::vector<int>(90, 0));
  for (int d = 0; d < kDraws; ++d) {
    Draw(std::make_unique<SeededEntropy>(0x9E3779B97F4A7C15ull * static_cast<std::uint64_t>(d + 1)));
    for (int pos = 0; pos < 90; ++pos) ++counts[pos][Module1::bingonumbers(pos) - 1];
  }
  const double expected = kDraws / 90.0;
  double chi2 = 0;
  for (const auto& row : counts)
    for (int c : row) chi2 += (c - expected) * (c - expected) / expected;
  // Each row and column sums to kDraws, so the plain sum runs 90/89 too
  // large; scaled, it has (90 - 1)^2 degrees of freedom. The 99% point by
  // the Wilson-Hilferty approximation.
  chi2 *= 89.0 / 90.0;
  const double df = 89.0 * 89.0;
  const double z99 = 2.3263;
  const double bound = df * std::pow(1 - 2 / (9 * df) + z99 * std::sqrt(2 / (9 * df)), 3);
  EXPECT_LT(chi2, bound);
}

}  // namespace
}  // namespace testgame
