#pragma once

#include <string>
#include <vector>

#include <benchmarks/voice/clips.h>

namespace zelvora::bench {

/// Seconds from the end of each clip's last loud buffer until the speech engine reported the end of
/// the capture, with the final result handed over. The clips are heard in real time from a sound
/// file; the engine ends the captures on its own.
[[nodiscard]] std::vector<double> endpointingDelays(const std::vector<Clip>& clips,
                                                    const std::vector<std::string>& vocabulary);

}  // namespace zelvora::bench
