#pragma once

#include <time.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace zelvora::bench {

/// Processor time of this thread, in seconds. Waiting for the processor does not count, so other
/// work on the machine disturbs it little.
inline double threadSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Seconds that `work()` takes.
template <class Work>
double secondsOf(Work&& work) {
  const double start = threadSeconds();
  work();
  return threadSeconds() - start;
}

/// The value that the given share of the values stay below.
inline double quantile(std::vector<double> values, double share) {
  const auto at = static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
  std::nth_element(values.begin(), values.begin() + at, values.end());
  return values[static_cast<std::size_t>(at)];
}

/// How many times as long `slow` takes as `fast`: the median of rounds that time both one right
/// after the other, so that other work on the machine weighs on both. Both return seconds.
template <class Slow, class Fast>
double medianRatio(int rounds, Slow&& slow, Fast&& fast) {
  std::vector<double> ratios;
  for (int round = 0; round < rounds; ++round) {
    const double fastSeconds = fast();
    ratios.push_back(slow() / fastSeconds);
  }
  return quantile(ratios, 0.5);
}

}  // namespace zelvora::bench
