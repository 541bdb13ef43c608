#include "bench/fairness/Suite.h"

#include <cmath>
#include <map>
#include <stdexcept>
#include <utility>

namespace fairness {
namespace {

// The longest runs and gaps are pooled until each class expects at least
// this many. Stricter than the usual 5: the runs and gaps statistics weight
// classes by the inverse covariance, so a rare class's skew counts for more
// than in Pearson's sum.
constexpr double kMinExpected = 20.0;

// ---- Up-down patterns of a random permutation -------------------------
//
// A step is the comparison of two neighbouring values: +1 a rise, -1 a
// fall, 0 either. The chance that a random permutation of steps.size() + 1
// values follows the pattern comes from the relative rank of the newest
// value, which is uniform and independent of the order before it: f[r] is
// the chance that the pattern holds so far and the last value ranks r-th.
double PatternProbability(const std::vector<int>& steps) {
  std::vector<double> f{1.0}, g;
  for (int step : steps) {
    const std::size_t size = f.size() + 1;
    double total = 0;
    for (double x : f) total += x;
    g.assign(size, 0.0);
    double below = 0;  // chance the previous value ranks below rank j
    for (std::size_t j = 0; j < size; ++j) {
      g[j] = (step > 0 ? below : step < 0 ? total - below : total) / static_cast<double>(size);
      if (j < f.size()) below += f[j];
    }
    f.swap(g);
  }
  double p = 0;
  for (double x : f) p += x;
  return p;
}

// A run event: a run of a given category starts at step `start`. It is a
// pattern over steps lo .. lo + rel.size() - 1, each relative to the run's
// direction (+1 the same, -1 the opposite); either direction will do.
struct RunEvent {
  int category;
  int lo;
  std::vector<int> rel;
};

class PatternCache {
 public:
  double operator()(const std::vector<int>& steps) {
    auto it = cache_.find(steps);
    if (it != cache_.end()) return it->second;
    const double p = PatternProbability(steps);
    cache_.emplace(steps, p);
    return p;
  }

 private:
  std::map<std::vector<int>, double> cache_;
};

double EventProbability(const RunEvent& e, PatternCache& cache) {
  // A pattern and its mirror image are equally likely.
  return 2.0 * cache(e.rel);
}

// Both events at once; zero when they demand different things of a step.
double JointProbability(const RunEvent& a, const RunEvent& b, PatternCache& cache) {
  const int lo = std::min(a.lo, b.lo);
  const int hi = std::max(a.lo + static_cast<int>(a.rel.size()), b.lo + static_cast<int>(b.rel.size()));
  double p = 0;
  for (int da : {1, -1}) {
    for (int db : {1, -1}) {
      std::vector<int> steps(static_cast<std::size_t>(hi - lo), 0);
      bool possible = true;
      auto impose = [&](const RunEvent& e, int dir) {
        for (std::size_t t = 0; t < e.rel.size(); ++t) {
          int& s = steps[static_cast<std::size_t>(e.lo - lo) + t];
          const int want = dir * e.rel[t];
          if (s != 0 && s != want) possible = false;
          s = want;
        }
      };
      impose(a, da);
      impose(b, db);
      if (possible) p += cache(steps);
    }
  }
  return p;
}

// Every place where a run of each category could start. Category c < last - 1
// is a run of exactly c + 1 steps; category last - 1 is a run of last steps
// or more, which only needs its start and its first `last` steps.
std::vector<RunEvent> RunEvents(int n, int last) {
  std::vector<RunEvent> events;
  const int steps = n - 1;
  for (int c = 0; c < last; ++c) {
    const bool pooled = c == last - 1;
    const int k = pooled ? last : c + 1;
    for (int i = 0; i + k <= steps; ++i) {
      RunEvent e{c, i > 0 ? i - 1 : i, {}};
      if (i > 0) e.rel.push_back(-1);
      for (int t = 0; t < k; ++t) e.rel.push_back(1);
      if (!pooled && i + k < steps) e.rel.push_back(-1);
      events.push_back(std::move(e));
    }
  }
  return events;
}

double Choose(int n, int k) {
  if (k < 0 || n < k) return 0.0;
  return std::exp(std::lgamma(n + 1.0) - std::lgamma(k + 1.0) - std::lgamma(n - k + 1.0));
}

double Square(double x) { return x * x; }

}  // namespace

// ---- Counting ----------------------------------------------------------

void CountRuns(std::span<const std::uint8_t> values, std::span<std::uint64_t> byLength) {
  if (values.size() < 2) return;
  bool up = values[1] > values[0];
  std::size_t length = 1;
  for (std::size_t s = 1; s + 1 < values.size(); ++s) {
    const bool rise = values[s + 1] > values[s];
    if (rise == up) {
      ++length;
    } else {
      ++byLength[length];
      up = rise;
      length = 1;
    }
  }
  ++byLength[length];
}

void CountGaps(std::span<const std::uint8_t> values, int classMax, std::span<std::uint64_t> byLength) {
  int previous = -1;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i] > classMax) continue;
    if (previous >= 0) ++byLength[i - static_cast<std::size_t>(previous) - 1];
    previous = static_cast<int>(i);
  }
}

// ---- Exact moments -----------------------------------------------------

std::vector<double> RunLengthMeans(int n) {
  std::vector<double> mean(static_cast<std::size_t>(std::max(n, 1)), 0.0);
  PatternCache cache;
  for (const RunEvent& e : RunEvents(n, n - 1)) {
    if (e.category < n - 2) mean[static_cast<std::size_t>(e.category) + 1] += EventProbability(e, cache);
  }
  // The one run that spans the whole sequence.
  if (n >= 2) mean[static_cast<std::size_t>(n) - 1] = 2.0 * PatternProbability(std::vector<int>(n - 1, 1));
  return mean;
}

Moments RunMoments(int n, int last) {
  if (last < 1 || last > n - 1) throw std::invalid_argument("RunMoments: last out of range");
  const auto events = RunEvents(n, last);
  PatternCache cache;
  std::vector<double> p;
  for (const auto& e : events) p.push_back(EventProbability(e, cache));
  const auto size = static_cast<std::size_t>(last);
  Moments m{std::vector<double>(size, 0.0), Matrix(size, std::vector<double>(size, 0.0))};
  for (std::size_t i = 0; i < events.size(); ++i) m.mean[static_cast<std::size_t>(events[i].category)] += p[i];
  // Events on disjoint sets of values are independent (the relative order
  // of one set says nothing of another's), so only events whose steps
  // touch a common value add to the covariance.
  for (std::size_t i = 0; i < events.size(); ++i) {
    const auto& a = events[i];
    for (std::size_t j = 0; j < events.size(); ++j) {
      const auto& b = events[j];
      const int aEnd = a.lo + static_cast<int>(a.rel.size());  // one past the last step
      const int bEnd = b.lo + static_cast<int>(b.rel.size());
      if (b.lo > aEnd || a.lo > bEnd) continue;
      m.cov[static_cast<std::size_t>(a.category)][static_cast<std::size_t>(b.category)] +=
          JointProbability(a, b, cache) - p[i] * p[j];
    }
  }
  return m;
}

Moments GapMoments(int n, int m, int last) {
  if (m < 2 || m > n || last < 0) throw std::invalid_argument("GapMoments: bad arguments");
  // The m marked places split the n - m others into m + 1 gaps (before,
  // between, after), and a random set of places is a random composition:
  // every gap is alike, P(gap = a) = C(n - a - 1, m - 1) / C(n, m), and two
  // gaps together are (a, b) with chance C(n - a - b - 2, m - 2) / C(n, m).
  const double total = Choose(n, m);
  const int maxGap = n - m;
  auto category = [&](int a) { return static_cast<std::size_t>(std::min(a, last)); };
  const auto size = static_cast<std::size_t>(last) + 1;
  const double gaps = m - 1;  // interior gaps only
  Moments mo{std::vector<double>(size, 0.0), Matrix(size, std::vector<double>(size, 0.0))};
  std::vector<double> single(static_cast<std::size_t>(maxGap) + 1);
  for (int a = 0; a <= maxGap; ++a) {
    single[static_cast<std::size_t>(a)] = Choose(n - a - 1, m - 1) / total;
    mo.mean[category(a)] += gaps * single[static_cast<std::size_t>(a)];
    mo.cov[category(a)][category(a)] += gaps * single[static_cast<std::size_t>(a)];
  }
  for (int a = 0; a <= maxGap; ++a) {
    for (int b = 0; a + b <= maxGap; ++b) {
      mo.cov[category(a)][category(b)] += gaps * (gaps - 1) * Choose(n - a - b - 2, m - 2) / total;
    }
  }
  for (std::size_t i = 0; i < size; ++i) {
    for (std::size_t j = 0; j < size; ++j) mo.cov[i][j] -= mo.mean[i] * mo.mean[j];
  }
  return mo;
}

// ---- The suite ----------------------------------------------------------

Tally::Tally() : position_(kBalls * kBalls, 0), pair_(kBalls * kBalls, 0) {}

void Tally::Add(const Draw& draw) {
  ++draws_;
  for (int p = 0; p < kBalls; ++p) ++position_[static_cast<std::size_t>(p * kBalls + draw[p] - 1)];
  for (int p = 0; p < 5; ++p) ++firstFive_[draw[p] - 1];
  for (int p = 0; p + 1 < kBalls; ++p) ++pair_[static_cast<std::size_t>((draw[p] - 1) * kBalls + draw[p + 1] - 1)];
  CountRuns(draw, runs_);
  CountGaps(draw, kGapClass, gaps_);
}

std::vector<TestResult> Tally::Results() const {
  return {Position(), FirstFive(), Serial(), Runs(), Gaps()};
}

TestResult Tally::Position() const {
  // Anderson's statistic for rankings: each draw puts one number in each
  // position, so Pearson's sum over the 90 x 90 table is (K - 1)/K times a
  // chi-square with (K - 1)^2 degrees of freedom, not the plain one.
  constexpr double K = kBalls;
  const double n = static_cast<double>(draws_), e = n / K;
  double sum = 0;
  for (std::uint64_t c : position_) sum += Square(static_cast<double>(c) - e);
  TestResult r{TestId::kPosition, "Number by position", 0, 0, 1, kBalls * kBalls, e, ""};
  r.statistic = (K - 1) / n * sum;
  r.df = (K - 1) * (K - 1);
  r.pValue = ChiSquareUpperTail(r.statistic, r.df);
  return r;
}

TestResult Tally::FirstFive() const {
  // Five numbers drawn without replacement: each number's count is
  // binomial with p = 5/90, but any two are negatively correlated, and
  // Pearson's sum is (1 - p) K/(K - 1) times a chi-square with K - 1
  // degrees of freedom. Dividing that factor out restores the plain one.
  constexpr double K = kBalls, p = 5.0 / kBalls;
  const double n = static_cast<double>(draws_), e = n * p;
  double sum = 0;
  for (std::uint64_t c : firstFive_) sum += Square(static_cast<double>(c) - e) / e;
  TestResult r{TestId::kFirstFive, "First five numbers", 0, 0, 1, kBalls, e, ""};
  r.statistic = sum * (K - 1) / ((1 - p) * K);
  r.df = K - 1;
  r.pValue = ChiSquareUpperTail(r.statistic, r.df);
  return r;
}

TestResult Tally::Serial() const {
  // The 90 x 89 table of ordered pairs (a, b), a != b, each cell expecting
  // N/K. A permutation never repeats a number and its pairs form one path,
  // so the cells are correlated. Split the deviations D into symmetric and
  // antisymmetric parts, and each into the part explained by row and
  // column totals and the part with all totals zero. On the zero-total part
  // the per-draw covariance is exactly q I (symmetric, dimension
  // K(K-1)/2 - K) and q (K+1)/(K-1) I (antisymmetric, K(K-1)/2 - (K-1)),
  // q = 1/K; so, scaled by those, it is chi-square with (K-1)^2 - K degrees
  // of freedom. The totals part only tells which numbers come first and
  // last, which the number-by-position test already covers.
  constexpr int K = kBalls;
  const double n = static_cast<double>(draws_), e = n / K;
  double symSq = 0, antiSq = 0;
  std::array<double, K> symRow{}, antiRow{};
  for (int a = 0; a < K; ++a) {
    for (int b = 0; b < K; ++b) {
      if (a == b) continue;
      const double dab = static_cast<double>(pair_[static_cast<std::size_t>(a * K + b)]) - e;
      const double dba = static_cast<double>(pair_[static_cast<std::size_t>(b * K + a)]) - e;
      const double s = (dab + dba) / 2, t = (dab - dba) / 2;
      symSq += s * s;
      antiSq += t * t;
      symRow[a] += s;
      antiRow[a] += t;
    }
  }
  // Projections onto the totals part: s = w(a) + w(b) with w = r/(K - 2),
  // t = w(a) - w(b) with w = r/K; their squared lengths are 2 sum w r.
  double symTotals = 0, antiTotals = 0;
  for (int a = 0; a < K; ++a) {
    symTotals += 2 * symRow[a] * symRow[a] / (K - 2);
    antiTotals += 2 * antiRow[a] * antiRow[a] / K;
  }
  TestResult r{TestId::kSerial, "Serial pairs", 0, 0, 1, K * (K - 1), e, ""};
  r.statistic = ((symSq - symTotals) + (antiSq - antiTotals) * (K - 1.0) / (K + 1.0)) / e;
  r.df = (K - 1.0) * (K - 1.0) - K;
  r.pValue = ChiSquareUpperTail(r.statistic, r.df);
  return r;
}

TestResult Tally::Runs() const {
  // Counts of runs of each length are correlated within a draw (they share
  // the draw's 89 steps), so Pearson's sum is not chi-square. The exact
  // per-draw covariance is known, and the quadratic form of the deviations
  // in its inverse is chi-square with one degree of freedom per class.
  const double n = static_cast<double>(draws_);
  const auto means = RunLengthMeans(kBalls);
  int last = kBalls - 1;
  double tail = means[static_cast<std::size_t>(last)];
  while (last > 2 && n * tail < kMinExpected) tail += means[static_cast<std::size_t>(--last)];
  const Moments m = RunMoments(kBalls, last);
  std::vector<double> d(static_cast<std::size_t>(last), 0.0);
  for (int len = 1; len < kBalls; ++len) {
    d[static_cast<std::size_t>(std::min(len, last) - 1)] += static_cast<double>(runs_[static_cast<std::size_t>(len)]);
  }
  Matrix cov = m.cov;
  double minExpected = n * m.mean[0];
  for (std::size_t i = 0; i < d.size(); ++i) {
    d[i] -= n * m.mean[i];
    minExpected = std::min(minExpected, n * m.mean[i]);
    for (double& c : cov[i]) c *= n;
  }
  TestResult r{TestId::kRuns, "Runs up and down", 0, 0, 1, last, minExpected,
               "lengths 1 to " + std::to_string(last - 1) + " and " + std::to_string(last) + " or more"};
  r.statistic = QuadraticForm(d, cov);
  r.df = last;
  r.pValue = ChiSquareUpperTail(r.statistic, r.df);
  return r;
}

TestResult Tally::Gaps() const {
  // Gap lengths between successive low numbers (1 to 45) within a draw.
  // The interior gaps of a draw add up to a fixed total and are correlated,
  // so as with runs the exact covariance is used; the last class is left
  // out, since the classes always sum to the number of gaps.
  const double n = static_cast<double>(draws_);
  int last = kBalls - kGapClass;
  const Moments full = GapMoments(kBalls, kGapClass, last);
  double tail = full.mean[static_cast<std::size_t>(last)];
  while (last > 1 && n * tail < kMinExpected) tail += full.mean[static_cast<std::size_t>(--last)];
  const Moments m = GapMoments(kBalls, kGapClass, last);
  const auto size = static_cast<std::size_t>(last);  // classes 0 .. last - 1; "last or more" left out
  std::vector<double> d(size, 0.0);
  Matrix cov(size, std::vector<double>(size, 0.0));
  double minExpected = n * m.mean[size];
  for (std::size_t i = 0; i < size; ++i) {
    d[i] = static_cast<double>(gaps_[i]) - n * m.mean[i];
    minExpected = std::min(minExpected, n * m.mean[i]);
    for (std::size_t j = 0; j < size; ++j) cov[i][j] = n * m.cov[i][j];
  }
  TestResult r{TestId::kGaps, "Gaps", 0, 0, 1, last + 1, minExpected,
               "gaps 0 to " + std::to_string(last - 1) + " and " + std::to_string(last) + " or more"};
  r.statistic = QuadraticForm(d, cov);
  r.df = last;
  r.pValue = ChiSquareUpperTail(r.statistic, r.df);
  return r;
}

}  // namespace fairness
