#pragma once

#include <pulse/simple.h>

#include <array>
#include <chrono>
#include <cmath>
#include <memory>
#include <stdexcept>

namespace zelvora::testing {

/// Listens to the sound server's loudspeaker.
class Loudspeaker {
 public:
  Loudspeaker() {
    constexpr pa_sample_spec kSpec{.format = PA_SAMPLE_FLOAT32NE, .rate = 48000, .channels = 1};
    constexpr auto kDefault = static_cast<std::uint32_t>(-1);
    constexpr pa_buffer_attr kSmall{.maxlength = kDefault,
                                    .tlength = kDefault,
                                    .prebuf = kDefault,
                                    .minreq = kDefault,
                                    .fragsize = sizeof(Block)};
    ear_.reset(pa_simple_new(nullptr, "ear", PA_STREAM_RECORD, "speaker.monitor", "ear", &kSpec,
                             nullptr, &kSmall, nullptr));
    if (!ear_) throw std::runtime_error("no loudspeaker");
  }

  /// Listens until `wanted(level)` holds for 10 ms of sound. False when it does not within half a
  /// minute of sound. The level is the root mean square.
  template <class Wanted>
  bool waitUntil(Wanted wanted) {
    for (int i = 0; i < 30 * 100; ++i)
      if (wanted(nextLevel())) return true;
    return false;
  }

 private:
  using Block = std::array<float, 480>;
  struct Close {
    void operator()(pa_simple* ear) const { pa_simple_free(ear); }
  };

  double nextLevel() {
    Block block{};
    if (pa_simple_read(ear_.get(), block.data(), sizeof block, nullptr) != 0)
      throw std::runtime_error("the loudspeaker has gone");
    double sum = 0;
    for (const float sample : block)
      sum += static_cast<double>(sample) * static_cast<double>(sample);
    return std::sqrt(sum / static_cast<double>(block.size()));
  }

  std::unique_ptr<pa_simple, Close> ear_;
};

}  // namespace zelvora::testing
