#include <ZelvoraSDK/outcome/diagnostics.h>

#include <limits>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

void increment(std::int64_t& counter) {
  if (counter == std::numeric_limits<std::int64_t>::max())
    fatalError("A diagnostics counter overflowed");
  ++counter;
}

}  // namespace

ZelvoraDiagnostics& ZelvoraDiagnostics::shared() {
  // Never destroyed: background work may count until the process has ended.
  static auto& diagnostics = *new ZelvoraDiagnostics;
  return diagnostics;
}

asio::awaitable<void> ZelvoraDiagnostics::reset() {
  return counters_.run([](Counters& counters) { counters = {}; });
}

asio::awaitable<void> ZelvoraDiagnostics::incCloud() {
  return counters_.run([](Counters& counters) { increment(counters.cloudInterpretCalls); });
}

void ZelvoraDiagnostics::incLocal() {
  counters_.post([](Counters& counters) { increment(counters.localHits); });
}

asio::awaitable<ZelvoraDiagnostics::Snapshot> ZelvoraDiagnostics::snapshot() {
  return counters_.run([](Counters& counters) {
    return Snapshot{.localHits = counters.localHits, .cloudCalls = counters.cloudInterpretCalls};
  });
}

}  // namespace zelvora
