#pragma once
// Numerical pieces of the fairness tests: chi-square tail probabilities and
// quadratic forms of count deviations. Standard library only.
#include <vector>

namespace fairness {

using Matrix = std::vector<std::vector<double>>;

// Q(a, x) = Gamma(a, x) / Gamma(a), the regularized upper incomplete gamma
// function, for a > 0 and x >= 0.
double GammaQ(double a, double x);

// P(X >= x) for X chi-square distributed with df degrees of freedom.
double ChiSquareUpperTail(double x, double df);

// d' * inverse(cov) * d for a symmetric positive-definite cov. Throws
// std::domain_error if cov is not positive definite.
double QuadraticForm(const std::vector<double>& d, const Matrix& cov);

}  // namespace fairness
