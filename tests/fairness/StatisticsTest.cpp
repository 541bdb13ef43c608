// The arithmetic behind the fairness suite: tail probabilities, the exact
// moments of runs and gaps, and whether each statistic really has the
// chi-square distribution it is judged by.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <stdexcept>

#include "bench/fairness/Suite.h"

namespace fairness {
namespace {

// ---- Tail probabilities ----------------------------------------------------

TEST(ChiSquareTail, MatchesReferenceValuesOnBothSidesOfTheMethodSwitch) {
  // References computed to 30 digits elsewhere. Small x uses the series,
  // large x the continued fraction; df = 7921 is the size of the big tables.
  EXPECT_NEAR(ChiSquareUpperTail(3.841458820694124, 1), 0.05, 1e-12);
  EXPECT_NEAR(ChiSquareUpperTail(23.20925115650, 10), 0.0100000000084605, 1e-12);
  EXPECT_NEAR(ChiSquareUpperTail(0.5, 3), 0.918891411654676, 1e-12);
  EXPECT_NEAR(ChiSquareUpperTail(122.0, 89), 0.0116299081467678, 1e-11);
  EXPECT_NEAR(ChiSquareUpperTail(7921, 7921), 0.497886927436279, 1e-9);
  EXPECT_NEAR(ChiSquareUpperTail(8200, 7921), 0.0140302962581791, 1e-10);
  EXPECT_NEAR(ChiSquareUpperTail(7600, 7831), 0.968482447838107, 1e-9);
  EXPECT_NEAR(ChiSquareUpperTail(60, 8) / 4.66103200077929e-10, 1.0, 1e-9);
  // Two degrees of freedom have the closed form exp(-x/2).
  for (double x : {0.1, 3.9, 4.1, 40.0}) EXPECT_NEAR(ChiSquareUpperTail(x, 2), std::exp(-x / 2), 1e-14) << x;
}

TEST(ChiSquareTail, EndsAreExact) {
  EXPECT_EQ(ChiSquareUpperTail(0, 5), 1.0);
  EXPECT_EQ(ChiSquareUpperTail(-1, 5), 1.0);
  EXPECT_LT(ChiSquareUpperTail(1e5, 10), 1e-300);
  EXPECT_THROW(GammaQ(0, 1), std::domain_error);
}

TEST(QuadraticForm, UsesTheInverseOfACorrelatedCovariance) {
  // [[2, 1], [1, 2]]^-1 = [[2, -1], [-1, 2]] / 3.
  EXPECT_NEAR(QuadraticForm({1, 1}, {{2, 1}, {1, 2}}), 2.0 / 3.0, 1e-14);
  EXPECT_NEAR(QuadraticForm({1, -1}, {{2, 1}, {1, 2}}), 2.0, 1e-14);
  EXPECT_THROW(QuadraticForm({1, 1}, {{1, 1}, {1, 1}}), std::domain_error);
}

// ---- Counting and exact moments -------------------------------------------

TEST(Counting, RunsAreMeasuredInStepsAndGapsBetweenMarkedValuesOnly) {
  const std::vector<std::uint8_t> v = {1, 3, 2, 4, 5, 6};  // up, down, up, up, up
  std::vector<std::uint64_t> runs(6, 0);
  CountRuns(v, runs);
  EXPECT_EQ(runs, (std::vector<std::uint64_t>{0, 2, 0, 1, 0, 0}));
  // Marked (<= 2) at places 0 and 2: one gap of 1; nothing before or after counts.
  std::vector<std::uint64_t> gaps(6, 0);
  CountGaps(v, 2, gaps);
  EXPECT_EQ(gaps, (std::vector<std::uint64_t>{0, 1, 0, 0, 0, 0}));
}

// Mean and covariance of a count vector over every permutation of 1..n.
template <class Count>
Moments Enumerate(int n, std::size_t classes, Count count) {
  std::vector<std::uint8_t> v(static_cast<std::size_t>(n));
  std::iota(v.begin(), v.end(), std::uint8_t{1});
  Moments m{std::vector<double>(classes, 0.0), Matrix(classes, std::vector<double>(classes, 0.0))};
  double perms = 0;
  do {
    const std::vector<double> c = count(v);
    for (std::size_t i = 0; i < classes; ++i) {
      m.mean[i] += c[i];
      for (std::size_t j = 0; j < classes; ++j) m.cov[i][j] += c[i] * c[j];
    }
    ++perms;
  } while (std::next_permutation(v.begin(), v.end()));
  for (std::size_t i = 0; i < classes; ++i) m.mean[i] /= perms;
  for (std::size_t i = 0; i < classes; ++i) {
    for (std::size_t j = 0; j < classes; ++j) m.cov[i][j] = m.cov[i][j] / perms - m.mean[i] * m.mean[j];
  }
  return m;
}

void ExpectSame(const Moments& exact, const Moments& enumerated) {
  ASSERT_EQ(exact.mean.size(), enumerated.mean.size());
  for (std::size_t i = 0; i < exact.mean.size(); ++i) {
    EXPECT_NEAR(exact.mean[i], enumerated.mean[i], 1e-12) << "mean " << i;
    for (std::size_t j = 0; j < exact.mean.size(); ++j) {
      EXPECT_NEAR(exact.cov[i][j], enumerated.cov[i][j], 1e-12) << i << "," << j;
    }
  }
}

TEST(ExactMoments, RunCountsAgreeWithEveryPermutationOfEight) {
  constexpr int n = 8, last = 3;  // lengths 1, 2 and 3 or more
  ExpectSame(RunMoments(n, last), Enumerate(n, last, [=](const std::vector<std::uint8_t>& v) {
               std::vector<std::uint64_t> byLength(n, 0);
               CountRuns(v, byLength);
               std::vector<double> c(last, 0.0);
               for (int len = 1; len < n; ++len) {
                 c[static_cast<std::size_t>(std::min(len, last) - 1)] +=
                     static_cast<double>(byLength[static_cast<std::size_t>(len)]);
               }
               return c;
             }));
}

TEST(ExactMoments, GapCountsAgreeWithEveryPermutationOfEight) {
  constexpr int n = 8, m = 3, last = 2;  // gaps 0, 1 and 2 or more
  ExpectSame(GapMoments(n, m, last), Enumerate(n, last + 1, [=](const std::vector<std::uint8_t>& v) {
               std::vector<std::uint64_t> byLength(n, 0);
               CountGaps(v, m, byLength);
               std::vector<double> c(last + 1, 0.0);
               for (int g = 0; g < n; ++g) {
                 c[static_cast<std::size_t>(std::min(g, last))] += static_cast<double>(byLength[static_cast<std::size_t>(g)]);
               }
               return c;
             }));
}

TEST(ExactMoments, RunsOfNinetyMatchTheClassicalFormulas) {
  constexpr int n = 90;
  const auto means = RunLengthMeans(n);
  auto factorial = [](int k) { return std::tgamma(k + 1.0); };
  for (int k = 1; k <= n - 2; ++k) {
    const double kk = k;
    const double formula = 2 * ((kk * kk + 3 * kk + 1) * n - (kk * kk * kk + 3 * kk * kk - kk - 4)) / factorial(k + 3);
    EXPECT_NEAR(means[static_cast<std::size_t>(k)] / formula, 1.0, 1e-9) << "length " << k;
  }
  EXPECT_NEAR(means[n - 1] * factorial(n) / 2, 1.0, 1e-9);
  // The total number of runs: mean (2n - 1)/3, variance (16n - 29)/90.
  const Moments m = RunMoments(n, 6);
  double mean = 0, var = 0;
  for (std::size_t i = 0; i < m.mean.size(); ++i) {
    mean += m.mean[i];
    for (double c : m.cov[i]) var += c;
  }
  EXPECT_NEAR(mean, (2.0 * n - 1) / 3, 1e-9);
  EXPECT_NEAR(var, (16.0 * n - 29) / 90, 1e-9);
}

// ---- The statistics under the null --------------------------------------

TEST(NullDistribution, EachStatisticAveragesItsDegreesOfFreedomOverFairShuffles) {
  // Batches of uniform shuffles from a seeded generator: each statistic's
  // mean must sit at its degrees of freedom (the chi-square mean) within
  // four standard errors. A wrong correction for the permutation's
  // constraints (Pearson's plain sum, the serial table's missing weights)
  // moves a mean by far more than that.
  constexpr int kBatches = 30;
  constexpr int kPerBatch = 1500;
  std::mt19937_64 engine(7);
  std::vector<double> sum(kTestCount, 0.0), df(kTestCount, 0.0);
  for (int b = 0; b < kBatches; ++b) {
    Tally tally;
    Draw d{};
    std::iota(d.begin(), d.end(), std::uint8_t{1});
    for (int i = 0; i < kPerBatch; ++i) {
      std::shuffle(d.begin(), d.end(), engine);
      tally.Add(d);
    }
    const auto results = tally.Results();
    for (int t = 0; t < kTestCount; ++t) {
      sum[static_cast<std::size_t>(t)] += results[static_cast<std::size_t>(t)].statistic;
      df[static_cast<std::size_t>(t)] = results[static_cast<std::size_t>(t)].df;
    }
  }
  for (int t = 0; t < kTestCount; ++t) {
    const double k = df[static_cast<std::size_t>(t)];
    EXPECT_NEAR(sum[static_cast<std::size_t>(t)] / kBatches, k, 4 * std::sqrt(2 * k / kBatches)) << "test " << t;
  }
}

}  // namespace
}  // namespace fairness
