#pragma once
// The q-quantile of a sample, interpolated between neighbours: the one
// summary every speed benchmark reports (median, p95, max).
#include <algorithm>
#include <cstddef>
#include <vector>

inline double Quantile(std::vector<double> v, double q) {
  if (v.empty()) return 0;
  std::sort(v.begin(), v.end());
  const double pos = q * static_cast<double>(v.size() - 1);
  const auto lo = static_cast<std::size_t>(pos);
  const auto hi = std::min(lo + 1, v.size() - 1);
  return v[lo] + (v[hi] - v[lo]) * (pos - static_cast<double>(lo));
}
