#pragma once

namespace zelvora::bench {

/// Prints what a capture costs the audio thread for each buffer, what a stalled consumer loses, and
/// how long the main thread is silent while a sound server hangs and a recogniser is slow. False
/// when the audio thread allocates, takes a lock or touches a file.
[[nodiscard]] bool measureThreads();

}  // namespace zelvora::bench
