#include "bench/fairness/Draws.h"

#include <stdexcept>

#include "engine/Module1.h"
#include "window/Window1.h"

namespace fairness {

Drawer::Drawer() : window_(std::make_unique<Window1>()) {}
Drawer::~Drawer() = default;

Draw Drawer::Next() {
  // What NumbersReset leaves for the draw: nothing placed, fill index 0.
  for (tk::Integer i = 0; i < kBalls; ++i) Module1::thearray.Set(i, false);
  Module1::HowManyNumbersGone = 0;
  window_->StoreTheRandomNumbers();
  Draw draw{};
  std::array<bool, kBalls + 1> seen{};
  for (int p = 0; p < kBalls; ++p) {
    const tk::Integer x = Module1::bingonumbers(p);
    if (x < 1 || x > kBalls || seen[static_cast<std::size_t>(x)]) {
      throw std::logic_error("the draw is not a permutation");
    }
    seen[static_cast<std::size_t>(x)] = true;
    draw[static_cast<std::size_t>(p)] = static_cast<std::uint8_t>(x);
  }
  return draw;
}

void AddDraws(Drawer& drawer, Tally& tally, std::uint64_t count) {
  for (std::uint64_t i = 0; i < count; ++i) tally.Add(drawer.Next());
}

}  // namespace fairness
