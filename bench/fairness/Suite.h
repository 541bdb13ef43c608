#pragma once
// The fairness suite: five statistical tests of the calling order, each a
// chi-square statistic whose null distribution accounts for the fact that
// a draw is a permutation (no number twice, every row and column of a
// number-by-position table summing to the number of draws).
//
// Draws are added one at a time, so a million of them need no more memory
// than a few count tables.
#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "bench/fairness/Statistics.h"

namespace fairness {

inline constexpr int kBalls = 90;
// The gap test marks the low half of the numbers.
inline constexpr int kGapClass = 45;

// Numbers 1 to 90, in calling order.
using Draw = std::array<std::uint8_t, kBalls>;

enum class TestId { kPosition, kFirstFive, kSerial, kRuns, kGaps };
inline constexpr int kTestCount = 5;

struct TestResult {
  TestId id;
  std::string name;
  double statistic = 0;
  double df = 0;
  double pValue = 1;
  int categories = 0;      // cells or classes that went into the statistic
  double minExpected = 0;  // smallest expected count among them
  std::string detail;      // the classes used, where they depend on N
};

class Tally {
 public:
  Tally();
  void Add(const Draw& draw);
  std::uint64_t Draws() const { return draws_; }
  // All five, in TestId order.
  std::vector<TestResult> Results() const;

 private:
  TestResult Position() const;
  TestResult FirstFive() const;
  TestResult Serial() const;
  TestResult Runs() const;
  TestResult Gaps() const;

  std::uint64_t draws_ = 0;
  std::vector<std::uint64_t> position_;  // [position][number - 1]
  std::vector<std::uint64_t> pair_;      // [first - 1][second - 1]
  std::array<std::uint64_t, kBalls> firstFive_{};
  std::array<std::uint64_t, kBalls> runs_{};  // by run length
  std::array<std::uint64_t, kBalls> gaps_{};  // by gap length
};

// Exact per-draw mean vector and covariance matrix of a vector of counts.
struct Moments {
  std::vector<double> mean;
  Matrix cov;
};

// Runs up and down of a sequence of distinct values: maximal stretches of
// successive rises (or falls), a run's length being its number of steps.
// Adds one to byLength[length] for every run.
void CountRuns(std::span<const std::uint8_t> values, std::span<std::uint64_t> byLength);
// Interior gaps between successive marked values (those <= classMax): the
// number of unmarked values between them. Adds one to byLength[gap].
void CountGaps(std::span<const std::uint8_t> values, int classMax, std::span<std::uint64_t> byLength);

// For a uniformly random permutation of n values: the counts of runs of
// length 1 .. last - 1 and of length last or more.
Moments RunMoments(int n, int last);
// Mean count of runs of each length 0 .. n - 1 (0 is always zero).
std::vector<double> RunLengthMeans(int n);
// For m marked among n places at random: the counts of interior gaps of
// length 0 .. last - 1 and of length last or more.
Moments GapMoments(int n, int m, int last);

}  // namespace fairness
