#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace zelvora::pulse {

/// Cuts a stream of samples into blocks of one size. Allocates when it is made, never after.
class Reblock {
 public:
  explicit Reblock(std::size_t blockSamples) : block_(blockSamples) {}

  /// Calls `deliver(std::span<const float>)` with each block that gets full.
  template <class Deliver>
  void take(std::span<const float> samples, Deliver deliver) {
    fill(samples.size(), deliver, [&](std::size_t from, std::span<float> to) {
      std::copy_n(samples.begin() + static_cast<std::ptrdiff_t>(from), to.size(), to.begin());
    });
  }

  /// The same for a gap in the stream.
  template <class Deliver>
  void takeSilence(std::size_t samples, Deliver deliver) {
    fill(samples, deliver,
         [](std::size_t, std::span<float> to) { std::fill(to.begin(), to.end(), 0.0F); });
  }

 private:
  template <class Deliver, class Copy>
  void fill(std::size_t count, Deliver deliver, Copy copy) {
    for (std::size_t done = 0; done < count;) {
      const std::size_t size = std::min(count - done, block_.size() - held_);
      copy(done, std::span(block_).subspan(held_, size));
      done += size;
      held_ += size;
      if (held_ < block_.size()) return;
      held_ = 0;
      deliver(std::span<const float>(block_));
    }
  }

  std::vector<float> block_;
  std::size_t held_ = 0;
};

}  // namespace zelvora::pulse
