// What a call costs in seconds, for the machine at hand. The argument is the number of tasks.

#include <benchmark/benchmark.h>

#include <ZelvoraSDK/base/json_read.h>
#include <benchmarks/workload.h>
#include <tests/support/reference_router.h>

namespace zelvora::bench {
namespace {

const Workload& workloadOf(const benchmark::State& state) {
  return workload(static_cast<std::size_t>(state.range(0)));
}

template <class Route>
void routeInTurn(benchmark::State& state, Route route) {
  const Workload& load = workloadOf(state);
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(route(load, load.utterances[next]));
    next = (next + 1) % load.utterances.size();
  }
}

void routeCompiled(benchmark::State& state) {
  routeInTurn(state,
              [scratch = RoutingScratch()](const Workload& load, const std::string& text) mutable {
                return load.compiled.route(text, {}, scratch);
              });
}
BENCHMARK(routeCompiled)->RangeMultiplier(10)->Range(10, 10000);

void routeLiteral(benchmark::State& state) {
  routeInTurn(state, [](const Workload& load, const std::string& text) {
    return reference::route(text, load.compiled.tasks(), {});
  });
}
BENCHMARK(routeLiteral)->RangeMultiplier(10)->Range(10, 10000);

void routeLongUtterance(benchmark::State& state) {
  const Workload& load = workloadOf(state);
  RoutingScratch scratch;
  for (auto _ : state)
    benchmark::DoNotOptimize(load.compiled.route(load.longUtterance, {}, scratch));
}
BENCHMARK(routeLongUtterance)->Arg(1000);

void compile(benchmark::State& state) {
  const Workload& load = workloadOf(state);
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<ZelvoraTaskSpec> records = load.spec.tasks();
    state.ResumeTiming();
    benchmark::DoNotOptimize(CompiledTasks(std::move(records)));
  }
}
BENCHMARK(compile)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMillisecond);

void decode(benchmark::State& state) {
  const Workload& load = workloadOf(state);
  for (auto _ : state) benchmark::DoNotOptimize(decodeJson<RuntimeSpec>(load.json).tasks());
}
BENCHMARK(decode)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelvora::bench
