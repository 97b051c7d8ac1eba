#include "application.h"

#include <unistd.h>

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include <ZelvoraSDK/adapters/host/host_platform.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/facade/spoken_phrases.h>
#include <ZelvoraSDK/spec/spec_loader.h>

#include "example_spec.h"
#include "input_file.h"
#include "offline_session.h"
#include "option_bundle.h"
#include "usage_error.h"

namespace zelvora::tool {
namespace {

/// Prints the library's lines to standard error; on a terminal over whatever live line stands
/// there.
class StandardErrorLogSink final : public LogSink {
 public:
  void write(std::string_view line) override {
    std::cerr << (isOnTerminal_ ? "\r\033[K" : "") + std::string(line) + '\n';
  }

 private:
  const bool isOnTerminal_ = isatty(STDERR_FILENO) != 0;
};

/// A clock that stands still, for runs that can be repeated.
class FrozenClock final : public Clock {
 public:
  explicit FrozenClock(Seconds sinceEpoch) : now_(sinceEpoch) {}
  Timestamp now() override { return now_; }

 private:
  Timestamp now_;
};

std::shared_ptr<Clock> clockOfEnvironment() {
  const char* frozen = std::getenv("ZELVORA_NOW");
  if (!frozen || !*frozen) return std::make_shared<SystemClock>();
  const std::string_view text = frozen;
  double seconds = 0;
  const auto read = std::from_chars(text.begin(), text.end(), seconds);
  if (read.ec != std::errc() || read.ptr != text.end() || !std::isfinite(seconds))
    throw UsageError("ZELVORA_NOW: not a number of seconds: " + std::string(text));
  return std::make_shared<FrozenClock>(Seconds(seconds));
}

Platform platformFor(const asio::any_io_executor& main, const CommonOptions& options) {
  HostOptions host{.bundle = options.bundle,
                   .clock = clockOfEnvironment(),
                   .log = std::make_shared<StandardErrorLogSink>()};
  if (options.dataDir) host.dataFolder = *options.dataDir;
  Platform platform = hostPlatform(main, host);
  platform.bundle = withOptions(std::move(platform.bundle), options);
  if (options.offline) platform.urlSession = std::make_shared<OfflineSession>();
  return platform;
}

AnyEncodable specFor(const CommonOptions& options, const AppBundle& bundle) {
  if (options.spec) return specInFile(*options.spec);
  if (options.resource) return requireSpecResource(*options.resource, bundle);
  if (options.bundle) throw UsageError("--bundle: which spec? Name it with --resource or --spec");
  if (const auto example = findExampleSpec()) return specInFile(*example);
  throw UsageError("no spec: name one with --spec FILE");
}

asio::awaitable<std::string> asToken(std::string token) { co_return token; }

/// One line a stage: what was asked, how long it took, what it answered.
void printStage(const StageReport& report) {
  const auto milliseconds = std::round(report.duration.count() * 1e6) / 1e3;
  std::cerr << "[" + report.stage + "] '" + report.asked + "' " + shortestDecimal(milliseconds) +
                   " ms -> " + report.answer + "\n";
}

ZelvoraHooks hooksFor(const CommonOptions& options) {
  ZelvoraHooks hooks;
  if (options.accessToken && !options.accessToken->empty())
    hooks.accessToken = [token = *options.accessToken] { return asToken(token); };
  if (options.verbose) hooks.onStage = printStage;
  return hooks;
}

}  // namespace

Application::Application(const CommonOptions& options)
    : platform_(platformFor(loop_.executor(), options)),
      settings_(settingsFromPropertyList(*platform_.bundle)),
      spec_(specFor(options, *platform_.bundle)),
      hooks_(hooksFor(options)) {}

void Application::enableSpeech(const std::optional<std::filesystem::path>& soundFile) {
  platform_.speech = hostSpeech(
      {.vocabulary = recognitionVocabulary(spec_, settings_.locale), .soundFile = soundFile},
      *platform_.executors);
}

Zelvora& Application::facade() {
  if (!facade_) facade_ = std::make_unique<Zelvora>(platform_, settings_, spec_, hooks_);
  return *facade_;
}

ZelvoraResult Application::route(const std::string& text) {
  ZelvoraResult outcome;
  facade().onResult = [&](ZelvoraResult result) {
    outcome = std::move(result);
    loop_.stop();
  };
  facade().routeAndCallback(text);
  loop_.run();
  return outcome;
}

}  // namespace zelvora::tool
