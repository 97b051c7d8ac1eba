#include <benchmarks/ratios.h>

#include <benchmark/benchmark.h>

#include <optional>
#include <span>
#include <utility>

#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/spec/stored_spec.h>
#include <benchmarks/facade_cost.h>
#include <benchmarks/heap_use.h>
#include <benchmarks/request_cost.h>
#include <benchmarks/timing.h>
#include <benchmarks/workload.h>
#include <tests/support/reference_router.h>

namespace zelvora::bench {
namespace {

constexpr int kRounds = 7;

const RuntimeSpec::Thresholds kThresholds;

/// Seconds per utterance, going over all of them `times` times.
double compiledSeconds(const Workload& load, std::span<const std::string> utterances, int times) {
  static RoutingScratch scratch;
  const double seconds = secondsOf([&] {
    for (int i = 0; i < times; ++i)
      for (const std::string& utterance : utterances)
        benchmark::DoNotOptimize(load.compiled.route(utterance, kThresholds, scratch));
  });
  return seconds / static_cast<double>(utterances.size()) / times;
}

double literalSeconds(const Workload& load, std::span<const std::string> utterances) {
  const double seconds = secondsOf([&] {
    for (const std::string& utterance : utterances)
      benchmark::DoNotOptimize(reference::route(utterance, load.compiled.tasks(), kThresholds));
  });
  return seconds / static_cast<double>(utterances.size());
}

double compiledVsLiteral(std::size_t tasks, std::size_t utteranceCount, int times) {
  const Workload& load = workload(tasks);
  const auto utterances = std::span(load.utterances).first(utteranceCount);
  return medianRatio(
      kRounds, [&] { return literalSeconds(load, utterances); },
      [&] { return compiledSeconds(load, utterances, times); });
}

double growth() {
  const Workload& small = workload(100);
  const Workload& large = workload(10000);
  return medianRatio(
      3 * kRounds, [&] { return compiledSeconds(large, large.utterances, 1); },
      [&] { return compiledSeconds(small, small.utterances, 20); });
}

/// Takes the median of each utterance's rounds, so that only differences between utterances are
/// left.
double tailOverMedian(std::size_t tasks) {
  const Workload& load = workload(tasks);
  std::vector<double> seconds;
  for (const std::string& utterance : load.utterances) {
    std::vector<double> rounds;
    for (int round = 0; round < 5 * kRounds; ++round)
      rounds.push_back(compiledSeconds(load, {&utterance, 1}, 3));
    seconds.push_back(quantile(std::move(rounds), 0.5));
  }
  return quantile(seconds, 0.99) / quantile(seconds, 0.5);
}

double longUtteranceVsLiteral() {
  const Workload& load = workload(1000);
  const std::span<const std::string> utterance(&load.longUtterance, 1);
  return medianRatio(
      kRounds, [&] { return literalSeconds(load, utterance); },
      [&] { return compiledSeconds(load, utterance, 100); });
}

/// Destroying what was built is timed on neither side.
double compileOverDecode(std::size_t tasks, int rounds) {
  const Workload& load = workload(tasks);
  return medianRatio(
      rounds,
      [&] {
        std::vector<ZelvoraTaskSpec> records = load.spec.tasks();
        std::optional<CompiledTasks> compiled;
        return secondsOf([&] { compiled.emplace(std::move(records)); });
      },
      [&] {
        std::optional<RuntimeSpec> spec;
        std::vector<ZelvoraTaskSpec> records;
        return secondsOf([&] {
          spec.emplace(decodeJson<RuntimeSpec>(load.json));
          records = spec->tasks();
        });
      });
}

/// From JSON text to a spec that is ready to route, over parsing the same text. Destroying what was
/// built is timed on neither side.
double loadOverParse(std::size_t tasks) {
  const Workload& load = workload(tasks);
  return medianRatio(
      kRounds,
      [&] {
        std::optional<StoredSpec> stored;
        std::optional<PreparedSpec> prepared;
        return secondsOf([&] {
          stored = StoredSpec::fromJson(load.json);
          prepared.emplace(*stored);
        });
      },
      [&] {
        std::optional<JsonDocument> document;
        return secondsOf([&] { document.emplace(parseJson(load.json)); });
      });
}

/// The most that any call allocates beyond what a copy of its result does.
double allocationsPerCall() {
  const Workload& load = workload(1000);
  RoutingScratch scratch;
  benchmark::DoNotOptimize(load.compiled.route(load.longUtterance, kThresholds, scratch));
  double most = 0;
  for (const std::string& utterance : load.utterances) {
    const std::size_t before = heapUse().allocations;
    const ZelvoraResult result = load.compiled.route(utterance, kThresholds, scratch);
    const std::size_t between = heapUse().allocations;
    const ZelvoraResult copy = result;
    const std::size_t after = heapUse().allocations;
    most = std::max(most,
                    static_cast<double>(between - before) - static_cast<double>(after - between));
  }
  return most;
}

/// As the allocator counts; the records themselves are handed over and not counted.
double compiledBytesPerTask(std::size_t tasks) {
  std::vector<ZelvoraTaskSpec> records = workload(tasks).spec.tasks();
  const std::size_t before = heapUse().liveBytes;
  const CompiledTasks compiled(std::move(records));
  return static_cast<double>(heapUse().liveBytes - before) / static_cast<double>(tasks);
}

}  // namespace

std::vector<Ratio> measureRatios() {
  constexpr bool kMore = true;
  return {
      {"compiled_vs_literal_10", compiledVsLiteral(10, 1000, 20), 12, 25, kMore},
      {"compiled_vs_literal_100", compiledVsLiteral(100, 1000, 20), 100, 180, kMore},
      {"compiled_vs_literal_1000", compiledVsLiteral(1000, 200, 20), 180, 450, kMore},
      {"compiled_vs_literal_10000", compiledVsLiteral(10000, 50, 20), 180, 550, kMore},
      {"growth_100_to_10000", growth(), 90, 40},
      {"p99_over_p50_1000", tailOverMedian(1000), 3, 2},
      {"long_utterance_vs_literal", longUtteranceVsLiteral(), 100, 200, kMore},
      {"compile_over_decode_100", compileOverDecode(100, 20 * kRounds), 6, 4},
      {"compile_over_decode_1000", compileOverDecode(1000, 5 * kRounds), 4, 2},
      {"compile_over_decode_10000", compileOverDecode(10000, kRounds), 2.5, 1.2},
      {"load_over_parse_10000", loadOverParse(10000), 6, 5},
      {"allocations_per_call", allocationsPerCall(), 0, 0},
      {"compiled_bytes_per_task_1000", compiledBytesPerTask(1000), 2000, 1200},
      {"compiled_bytes_per_task_10000", compiledBytesPerTask(10000), 800, 450},
      {"route_over_allowance_1000", routeOverAllowance(1000, kRounds), 1, 0.6},
      {"heap_growth_of_100000_calls", heapGrowthOf(100000), 0, 0},
      {"warm_request_vs_libcurl", warmRequestVsLibcurl(), 1.3, 1.15},
  };
}

}  // namespace zelvora::bench
