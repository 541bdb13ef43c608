#pragma once
// Games for tests, written as the order of their numbers: a source that
// makes the game's own draw come out exactly as listed, through the seam
// of tk::Random. The program itself never seeds anything.
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <vector>

#include "toolkit/Exceptions.h"
#include "toolkit/Random.h"

namespace tests {

// An entropy source that yields the given words, then fails the test.
struct ScriptedEntropy : tk::EntropySource {
  std::deque<std::uint64_t> words;
  std::uint64_t Next64() override {
    if (words.empty()) {
      ADD_FAILURE() << "the draw asked for more random numbers than the script holds";
      throw tk::RuntimeException("script exhausted");
    }
    const std::uint64_t w = words.front();
    words.pop_front();
    return w;
  }
};

// Number k becomes the word k - 1, which InRange(0, 89) returns unchanged.
inline std::unique_ptr<tk::EntropySource> Dictate(const std::vector<tk::Integer>& order) {
  auto source = std::make_unique<ScriptedEntropy>();
  for (tk::Integer k : order) source->words.push_back(static_cast<std::uint64_t>(k - 1));
  return source;
}

// 1..90 in a fixed, scrambled order (37 is prime to 90), turned by some places.
inline std::vector<tk::Integer> OrderA(long turn = 0) {
  std::vector<tk::Integer> order;
  for (tk::Integer i = 0; i < 90; ++i) order.push_back((i * 37) % 90 + 1);
  std::rotate(order.begin(), order.begin() + turn % 90, order.end());
  return order;
}
inline std::vector<tk::Integer> OrderB() { return OrderA(1); }

}  // namespace tests
