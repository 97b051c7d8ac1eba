#pragma once

#include <string>
#include <vector>

#include "report.h"

namespace zelvora::tool {

/// One part of a bar.
struct BarPart {
  std::string label;
  std::string kind;  ///< The class that colours it.
  std::size_t count = 0;
};

/// A bar of parts with its legend.
std::string stackedBar(const std::string& caption, const std::vector<BarPart>& parts);

/// Counts by confidence, one bar per 0.05.
std::string histogram(const std::string& caption, const std::string& kind,
                      const std::vector<double>& confidences);

/// What thresholds would give: opened out of scope (or wrong, without any out of scope) across,
/// right upwards.
struct SweepPoint {
  double score = 0;
  double cost = 0;   ///< A share.
  double right = 0;  ///< A share.
};
struct Sweep {
  std::vector<SweepPoint> points;
  SweepPoint today;
  SweepPoint best;
  std::string cost;  ///< What the cost is.
};
std::string sweepChart(const Sweep& sweep);

}  // namespace zelvora::tool
