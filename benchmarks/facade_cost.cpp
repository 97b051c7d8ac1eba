#include <benchmarks/facade_cost.h>

#include <benchmark/benchmark.h>

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/spec/stored_spec.h>
#include <ZelvoraSDK/testing/system.h>
#include <ZelvoraSDK/zelvora.h>
#include <benchmarks/heap_use.h>
#include <benchmarks/timing.h>
#include <benchmarks/workload.h>

namespace zelvora::bench {
namespace {

constexpr double kAllowedScorings = 3;
constexpr double kAllowedSeconds = 5e-6;

class NoLog final : public LogSink {
 public:
  void write(std::string_view /*line*/) override {}
};

/// Everything on the one thread that is measured.
class OneThread final : public Executors {
 public:
  explicit OneThread(asio::io_context& context) : context_(context) {}
  asio::any_io_executor main() override { return context_.get_executor(); }
  asio::any_io_executor background() override { return context_.get_executor(); }

 private:
  asio::io_context& context_;
};

/// A façade over a workload's spec, and the utterances that it settles on the device.
class Application {
 public:
  explicit Application(const Workload& load) : load_(load) {
    const Platform platform{.executors = std::make_shared<OneThread>(context_),
                            .clock = std::make_shared<SystemClock>(),
                            .log = std::make_shared<NoLog>(),
                            .defaults = std::make_shared<testing::MemoryDefaults>(),
                            .bundle = std::make_shared<testing::MemoryBundle>(),
                            .urlSession = std::make_shared<NoNetworkSession>()};
    const ZelvoraSettings settings{.publishableKey = "bench"};
    StoredSpec spec = StoredSpec::fromAnyJson(load.json);
    zelvora_ = std::make_unique<Zelvora>(platform, settings, std::move(spec));
    for (const std::string& utterance : load.utterances) {
      const ZelvoraResult result = load.compiled.route(utterance, kThresholds);
      if (std::holds_alternative<ZelvoraExecute>(result)) settled_.push_back(utterance);
    }
  }

  /// Seconds per utterance through the whole pipeline.
  double routeSeconds(int times) {
    const double seconds = secondsOf([&] {
      context_.restart();
      asio::co_spawn(context_, routeAll(*zelvora_, settled_, times), asio::detached);
      context_.run();
    });
    return seconds / static_cast<double>(settled_.size()) / times;
  }

  /// Seconds per utterance in the router alone.
  double scoringSeconds(int times) {
    const double seconds = secondsOf([&] {
      for (int i = 0; i < times; ++i)
        for (const std::string& utterance : settled_)
          benchmark::DoNotOptimize(load_.compiled.route(utterance, kThresholds, scratch_));
    });
    return seconds / static_cast<double>(settled_.size()) / times;
  }

  [[nodiscard]] std::size_t settledCount() const { return settled_.size(); }

 private:
  static asio::awaitable<void> routeAll(Zelvora& zelvora, std::span<const std::string> utterances,
                                        int times) {
    for (int i = 0; i < times; ++i)
      for (const std::string& utterance : utterances)
        benchmark::DoNotOptimize(co_await zelvora.route(utterance));
  }

  static const RuntimeSpec::Thresholds kThresholds;

  const Workload& load_;
  asio::io_context context_{1};
  std::unique_ptr<Zelvora> zelvora_;
  std::vector<std::string> settled_;
  RoutingScratch scratch_;
};

const RuntimeSpec::Thresholds Application::kThresholds;

}  // namespace

double routeOverAllowance(std::size_t tasks, int rounds) {
  Application application(workload(tasks));
  application.routeSeconds(1);  // resolves and compiles the spec
  std::vector<double> shares;
  for (int round = 0; round < rounds; ++round) {
    const double allowed = kAllowedScorings * application.scoringSeconds(20) + kAllowedSeconds;
    shares.push_back(application.routeSeconds(20) / allowed);
  }
  return quantile(std::move(shares), 0.5);
}

double heapGrowthOf(std::size_t calls) {
  Application application(workload(100));
  application.routeSeconds(2);
  const std::size_t before = heapUse().liveBytes;
  application.routeSeconds(static_cast<int>(calls / application.settledCount()) + 1);
  return static_cast<double>(heapUse().liveBytes) - static_cast<double>(before);
}

}  // namespace zelvora::bench
