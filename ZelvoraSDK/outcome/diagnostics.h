#pragma once

#include <cstdint>

#include <ZelvoraSDK/async/actor.h>

namespace zelvora {

/// Process-wide counters of how utterances were settled. Callable from any thread.
class ZelvoraDiagnostics {
 public:
  struct Snapshot {
    std::int64_t localHits = 0;
    std::int64_t cloudCalls = 0;

    bool operator==(const Snapshot&) const = default;
  };

  static ZelvoraDiagnostics& shared();

  /// Sets both counters to 0.
  asio::awaitable<void> reset();
  /// Counts an interpret request.
  asio::awaitable<void> incCloud();
  /// Counts a local hit, without waiting for it.
  void incLocal();
  asio::awaitable<Snapshot> snapshot();

 private:
  struct Counters {
    std::int64_t cloudInterpretCalls = 0;
    std::int64_t localHits = 0;
  };

  Actor<Counters> counters_;
};

}  // namespace zelvora
