#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

namespace zelvora::bench {

/// The share of `part` in `whole` with Wilson's 95 % interval, in per cent: "87.5 [80.4, 92.3]".
inline std::string shareWithInterval(std::size_t part, std::size_t whole) {
  if (whole == 0) return "none";
  constexpr double kZ = 1.96;
  const auto n = static_cast<double>(whole);
  const double share = static_cast<double>(part) / n;
  const double scale = 1 + kZ * kZ / n;
  const double middle = (share + kZ * kZ / (2 * n)) / scale;
  const double half = kZ * std::sqrt(share * (1 - share) / n + kZ * kZ / (4 * n * n)) / scale;
  char text[64];
  std::snprintf(text, sizeof text, "%5.1f [%4.1f, %5.1f]", 100 * share,
                100 * std::max(0.0, middle - half), 100 * std::min(1.0, middle + half));
  return text;
}

/// How often a value of `high` is above one of `low`; half for a tie.
inline double areaUnderCurve(const std::vector<double>& high, const std::vector<double>& low) {
  double above = 0;
  for (const double a : high)
    for (const double b : low) above += a > b ? 1 : a == b ? 0.5 : 0;
  return high.empty() || low.empty() ? 0 : above / static_cast<double>(high.size() * low.size());
}

}  // namespace zelvora::bench
