#include <ZelvoraSDK/adapters/host.h>

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <utility>

#include <ZelvoraSDK/adapters/curl/curl_url_session.h>
#include <ZelvoraSDK/adapters/plist/plist_bundle.h>
#include <ZelvoraSDK/adapters/sqlite/sqlite_defaults.h>
#include <ZelvoraSDK/async/durable_queue.h>
#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/base/limits.h>

namespace zelvora {
namespace {

/// Work waits for the network and, rarely, for storage; it hardly computes.
constexpr std::size_t kBackgroundThreads = 2;

/// For programs that come without a bundle.
class NoBundle final : public AppBundle {
 public:
  [[nodiscard]] std::optional<std::filesystem::path> resource(
      const std::string& /*name*/, const std::string& /*extension*/) const override {
    return std::nullopt;
  }
  [[nodiscard]] std::optional<std::string> stringSetting(
      const std::string& /*key*/) const override {
    return std::nullopt;
  }
  [[nodiscard]] std::optional<double> numberSetting(const std::string& /*key*/) const override {
    return std::nullopt;
  }
  [[nodiscard]] std::optional<std::string> identifier() const override { return std::nullopt; }
  [[nodiscard]] std::string description() const override { return "no application bundle"; }
};

std::shared_ptr<AppBundle> bundleAt(const std::optional<std::filesystem::path>& folder) {
  if (!folder) return std::make_shared<NoBundle>();
  return std::make_shared<PlistBundle>(*folder);
}

std::filesystem::path homeFolder() {
  if (const char* home = std::getenv("HOME"); home && *home) return home;
  const passwd* user = ::getpwuid(::getuid());
  return user ? user->pw_dir : "/";
}

}  // namespace

std::filesystem::path HostOptions::userDataFolder() {
  const char* dataHome = std::getenv("XDG_DATA_HOME");
  const bool isUsable = dataHome && *dataHome == '/';
  return (isUsable ? std::filesystem::path(dataHome) : homeFolder() / ".local/share") / "zelvora";
}

class HostPlatform::Threads final : public Executors {
 public:
  explicit Threads(asio::any_io_executor main) : main_(std::move(main)) {}

  asio::any_io_executor main() override { return main_; }
  asio::any_io_executor background() override { return pool_.executor(); }

  void end() { pool_.stop(); }

 private:
  asio::any_io_executor main_;
  WorkerPool pool_{kBackgroundThreads};
};

HostPlatform::HostPlatform(asio::any_io_executor mainExecutor, const HostOptions& options)
    : threads_(std::make_shared<Threads>(std::move(mainExecutor))),
      platform_{.executors = threads_,
                .clock = options.clock,
                .log = options.log,
                .defaults = std::make_shared<SqliteDefaults>(SqliteDefaults::Options{
                    .file = options.dataFolder / "defaults.sqlite", .log = options.log}),
                .bundle = bundleAt(options.bundle),
                .urlSession = std::make_shared<CurlUrlSession>()} {
  if (options.speech) platform_.speech = hostSpeech(*options.speech, *threads_, options.log);
}

HostPlatform::~HostPlatform() {
  DurableQueue::finishAll(kMaxDrainTime);
  threads_->end();
}

}  // namespace zelvora
