#pragma once

#include <string>
#include <vector>

namespace zelvora::bench {

/// A figure that does not depend on how fast the machine is.
struct Ratio {
  std::string name;
  double value = 0;
  double must = 0;  ///< The bound that has to hold.
  double aim = 0;   ///< The bound that is aimed at.
  bool moreIsBetter = false;

  [[nodiscard]] bool holds(double bound) const {
    return moreIsBetter ? value >= bound : value <= bound;
  }
};

/// Measures them all, which takes about a minute.
std::vector<Ratio> measureRatios();

}  // namespace zelvora::bench
