// The fairness run: N draws made by the game's own draw from the system's
// generator, the five tests over them, and a Markdown report.
//
//   calloquin_fairness [--draws N] [--out FILE]
//   calloquin_fairness --calibrate R [--draws N]
//
// --calibrate checks the tests themselves rather than the draw: R batches
// of N uniform shuffles from a seeded generator, and how often each test
// rejects at 1% (it should be about 1% of batches).
#include <sys/utsname.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iostream>
#include <numeric>
#include <random>
#include <sstream>
#include <string>

#include "bench/fairness/Draws.h"
#include "toolkit/Application.h"

namespace {

constexpr double kLevel = 0.01;

std::string CpuModel() {
  std::ifstream in("/proc/cpuinfo");
  std::string line;
  while (std::getline(in, line)) {
    if (line.rfind("model name", 0) == 0) {
      const auto colon = line.find(':');
      if (colon != std::string::npos) return line.substr(line.find_first_not_of(' ', colon + 1));
    }
  }
  return "unknown";
}

std::string Machine() {
  utsname u{};
  std::string os = uname(&u) == 0 ? std::string(u.sysname) + " " + u.release + " " + u.machine : "unknown";
  return CpuModel() + ", " + os;
}

std::string UtcNow() {
  const std::time_t t = std::time(nullptr);
  char buf[32];
  std::strftime(buf, sizeof buf, "%Y-%m-%d %H:%M UTC", std::gmtime(&t));
  return buf;
}

std::string Fixed(double x, int digits) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.*f", digits, x);
  return buf;
}

std::string PValue(double p) {
  char buf[64];
  std::snprintf(buf, sizeof buf, p < 1e-4 ? "%.2e" : "%.4f", p);
  return buf;
}

std::string Thousands(std::uint64_t n) {
  const std::string digits = std::to_string(n);
  std::string s;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && (digits.size() - i) % 3 == 0) s += ',';
    s += digits[i];
  }
  return s;
}

std::string Report(const std::vector<fairness::TestResult>& results, std::uint64_t draws, double seconds) {
  std::ostringstream md;
  bool all = true;
  for (const auto& r : results) all = all && r.pValue > kLevel;
  md << "# Fairness of the draw\n\n"
     << "Written by `calloquin_fairness` (target `fairness`); do not edit by hand.\n\n"
     << "| | |\n|---|---|\n"
     << "| Date | " << UtcNow() << " |\n"
     << "| Machine | " << Machine() << " |\n"
     << "| Compiler | " << __VERSION__ << " |\n"
     << "| Draws (N) | " << Thousands(draws) << " |\n"
     << "| Source | `Window1::StoreTheRandomNumbers` with `tk::Random` on the system generator (getrandom) |\n"
     << "| Time | " << Fixed(seconds, 1) << " s |\n"
     << "| Verdict | " << (all ? "**PASS**: every test above 0.01" : "**FAIL**: see below") << " |\n\n"
     << "Each test passes at 99% confidence when its p-value is above 0.01.\n\n"
     << "| Test | Statistic | df | p-value | Result | Classes | Smallest expected count |\n"
     << "|---|---:|---:|---:|---|---:|---:|\n";
  for (const auto& r : results) {
    md << "| " << r.name << " | " << Fixed(r.statistic, 2) << " | " << Fixed(r.df, 0) << " | " << PValue(r.pValue)
       << " | " << (r.pValue > kLevel ? "pass" : "**fail**") << " | " << r.categories
       << (r.detail.empty() ? "" : " (" + r.detail + ")") << " | " << Fixed(r.minExpected, 1) << " |\n";
  }
  md << R"(
## The tests

A draw is a permutation of 1 to 90, so its counts are not independent cells
of a multinomial: no number comes twice, and every number and every position
is used exactly once. Each statistic below is built so that, for a uniformly
random permutation, it is chi-square distributed with the degrees of freedom
given; the p-value is the upper tail, from the regularized incomplete gamma
function.

1. **Number by position.** The 90 x 90 table of how often number k stood at
   position p. Every row and every column sums to N, leaving 89 x 89 = 7921
   degrees of freedom, and the cells of one draw are correlated, so Pearson's
   sum is 90/89 times too large: the statistic is Anderson's
   (K - 1)/N x sum (n_pk - N/K)^2, K = 90.
2. **First five numbers.** How often each number stood among the first five
   called (expected 5N/90). Five distinct numbers per draw make the counts
   negatively correlated, and Pearson's sum is scaled by 89/85 to correct for
   it; 89 degrees of freedom (the counts sum to 5N).
3. **Serial pairs.** The 90 x 89 table of ordered pairs (number at position i,
   number at position i + 1), i = 1 to 89, expected N/90 each; a number never
   follows itself, so the diagonal is left out. The part of the deviations
   fixed by row and column totals (which numbers come first and last, tested
   above) is projected out, and the symmetric and antisymmetric parts are
   weighted by their exact variances (1 and 91/89 times Pearson's), leaving
   89^2 - 90 = 7831 degrees of freedom.
4. **Runs up and down.** Within each draw, the lengths (in steps) of maximal
   rising or falling stretches of the 90 numbers. Observed counts by length
   are compared with the exact expectation for random permutations (for
   length k < 89 it is 2[(k^2 + 3k + 1)n - (k^3 + 3k^2 - k - 4)]/(k + 3)!,
   n = 90, Levene and Wolfowitz), the longest lengths pooled so that each
   class expects at least 20. Run counts of one draw are correlated, so the
   statistic is the quadratic form of the deviations in the inverse of their
   exact covariance (computed from the probabilities of up-down patterns),
   one degree of freedom per class.
5. **Gaps.** Knuth's gap test with the class of low numbers 1 to 45: in each
   draw, the number of high numbers between successive low ones (44 gaps per
   draw). Gaps of a random permutation are exchangeable, with
   P(gap = a) = C(89 - a, 44) / C(90, 45); the longest gaps are pooled so that
   each class expects at least 20, and as with runs the statistic is the
   quadratic form in the exact covariance (one class left out, since the
   classes always sum to 44 per draw).

## Checking the tests themselves

`calloquin_fairness --calibrate R --draws N` runs the five tests on R batches
of N uniform shuffles from a seeded generator instead of the game's draw: each
statistic should average its degrees of freedom and each test should reject
about 1% of batches. That run, not a unit test, is how the suite's own
arithmetic is checked; CI runs the suite over 10,000 of the game's draws.

## Every order can come up

The draw takes its numbers straight from the operating system's
cryptographically secure generator (getrandom), through `tk::Random::InRange`,
which rejects the raw words that would make some results likelier than others.
There is no generator of our own seeded once, whose state size would cap how
many of the 90! orders (about 1.49 x 10^138, or 2^458.4) could ever come up:
a seed of 64 bits, for instance, could reach at most 2^64 of them. The kernel's
generator keeps no fixed state that the game depends on; it rekeys itself after
each request and is reseeded from fresh entropy as the system runs, so every
game reads a new stream and no order is excluded by construction. With each
candidate uniform and independent, the rejection sampling makes all 90! orders
equally likely.
)";
  return md.str();
}

int Calibrate(int replicates, std::uint64_t draws) {
  std::mt19937_64 engine(20240517);
  std::vector<int> rejections(fairness::kTestCount, 0);
  std::vector<double> statSum(fairness::kTestCount, 0.0), df(fairness::kTestCount, 0.0);
  for (int r = 0; r < replicates; ++r) {
    fairness::Tally tally;
    fairness::Draw d{};
    std::iota(d.begin(), d.end(), std::uint8_t{1});
    for (std::uint64_t i = 0; i < draws; ++i) {
      std::shuffle(d.begin(), d.end(), engine);
      tally.Add(d);
    }
    const auto results = tally.Results();
    for (std::size_t t = 0; t < results.size(); ++t) {
      rejections[t] += results[t].pValue <= kLevel ? 1 : 0;
      statSum[t] += results[t].statistic;
      df[t] = results[t].df;
    }
  }
  const char* names[] = {"Number by position", "First five numbers", "Serial pairs", "Runs up and down", "Gaps"};
  std::cout << "| Test | df | Mean statistic | Rejected at 1% |\n|---|---:|---:|---:|\n";
  for (int t = 0; t < fairness::kTestCount; ++t) {
    std::cout << "| " << names[t] << " | " << Fixed(df[t], 0) << " | " << Fixed(statSum[t] / replicates, 1) << " | "
              << rejections[t] << " of " << replicates << " |\n";
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  std::uint64_t draws = 1000000;
  int replicates = 0;
  std::string out;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--draws" && i + 1 < argc) {
      draws = std::strtoull(argv[++i], nullptr, 10);
    } else if (arg == "--out" && i + 1 < argc) {
      out = argv[++i];
    } else if (arg == "--calibrate" && i + 1 < argc) {
      replicates = std::atoi(argv[++i]);
    } else {
      std::cerr << "usage: calloquin_fairness [--draws N] [--out FILE] | --calibrate R [--draws N]\n";
      return 2;
    }
  }
  if (draws < 1000) {
    std::cerr << "at least 1000 draws are needed for the expected counts\n";
    return 2;
  }
  if (replicates > 0) return Calibrate(replicates, draws);

  // The window needs a GUI, but never shows itself.
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  tk::RuntimeInit(argc, argv);
  fairness::Tally tally;
  const auto start = std::chrono::steady_clock::now();
  {
    fairness::Drawer drawer;
    const std::uint64_t step = std::max<std::uint64_t>(draws / 10, 1);
    for (std::uint64_t done = 0; done < draws;) {
      const std::uint64_t batch = std::min(step, draws - done);
      fairness::AddDraws(drawer, tally, batch);
      done += batch;
      std::cerr << "\r" << done << " / " << draws << " draws" << std::flush;
    }
    std::cerr << "\n";
  }
  tk::RuntimePerformFinalizers();
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  const auto results = tally.Results();
  const std::string report = Report(results, draws, seconds);
  if (out.empty()) {
    std::cout << report;
  } else {
    std::ofstream file(out);
    file << report;
    if (!file) {
      std::cerr << "cannot write " << out << "\n";
      return 1;
    }
    std::cerr << "wrote " << out << "\n";
  }
  bool pass = true;
  for (const auto& r : results) pass = pass && r.pValue > kLevel;
  return pass ? 0 : 1;
}
