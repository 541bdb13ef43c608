#include "bench/fairness/Statistics.h"

#include <cmath>
#include <limits>
#include <stdexcept>

namespace fairness {
namespace {

constexpr int kMaxIterations = 1000000;
constexpr double kEpsilon = 1e-15;

// exp(-x) x^a / Gamma(a), in logs: with a in the thousands the pieces
// overflow long before their quotient does.
double Prefactor(double a, double x) { return std::exp(-x + a * std::log(x) - std::lgamma(a)); }

// P(a, x) by its power series; converges quickly for x < a + 1.
double LowerSeries(double a, double x) {
  double term = 1.0 / a, sum = term;
  for (int n = 1; n < kMaxIterations; ++n) {
    term *= x / (a + n);
    sum += term;
    if (std::fabs(term) < std::fabs(sum) * kEpsilon) break;
  }
  return sum * Prefactor(a, x);
}

// Q(a, x) by its continued fraction (modified Lentz); converges quickly
// for x >= a + 1.
double UpperFraction(double a, double x) {
  constexpr double tiny = std::numeric_limits<double>::min() / kEpsilon;
  double b = x + 1.0 - a, c = 1.0 / tiny, d = 1.0 / b, h = d;
  for (int i = 1; i < kMaxIterations; ++i) {
    const double an = -i * (i - a);
    b += 2.0;
    d = an * d + b;
    if (std::fabs(d) < tiny) d = tiny;
    c = b + an / c;
    if (std::fabs(c) < tiny) c = tiny;
    d = 1.0 / d;
    const double delta = d * c;
    h *= delta;
    if (std::fabs(delta - 1.0) < kEpsilon) break;
  }
  return h * Prefactor(a, x);
}

}  // namespace

double GammaQ(double a, double x) {
  if (!(a > 0) || x < 0) throw std::domain_error("GammaQ needs a > 0 and x >= 0");
  if (x == 0) return 1.0;
  // Each branch is used where it converges; the other side follows by
  // complement, losing nothing when the complement is near 1.
  if (x < a + 1.0) return 1.0 - LowerSeries(a, x);
  return UpperFraction(a, x);
}

double ChiSquareUpperTail(double x, double df) { return GammaQ(df / 2.0, x < 0 ? 0.0 : x / 2.0); }

double QuadraticForm(const std::vector<double>& d, const Matrix& cov) {
  // Cholesky, cov = L L'; then d' cov^-1 d = |L^-1 d|^2.
  const std::size_t n = d.size();
  Matrix l(n, std::vector<double>(n, 0.0));
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j <= i; ++j) {
      double s = cov[i][j];
      for (std::size_t k = 0; k < j; ++k) s -= l[i][k] * l[j][k];
      if (i == j) {
        if (!(s > 0)) throw std::domain_error("covariance matrix is not positive definite");
        l[i][i] = std::sqrt(s);
      } else {
        l[i][j] = s / l[j][j];
      }
    }
  }
  double sum = 0;
  std::vector<double> y(n);
  for (std::size_t i = 0; i < n; ++i) {
    double s = d[i];
    for (std::size_t k = 0; k < i; ++k) s -= l[i][k] * y[k];
    y[i] = s / l[i][i];
    sum += y[i] * y[i];
  }
  return sum;
}

}  // namespace fairness
