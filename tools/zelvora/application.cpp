#include "application.h"
#include "explanation.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/facade/spoken_phrases.h>
#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/routing/learning_store.h>
#include <ZelvoraSDK/spec/stored_spec.h>

namespace zelvora::tool {
namespace {

namespace fs = std::filesystem;

/// A stopped clock, for runs that can be repeated.
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

/// A bundle as the call changes it: options win over the property list, and the key is "demo"
/// where neither gives one.
class OptionBundle final : public AppBundle {
 public:
  OptionBundle(std::shared_ptr<AppBundle> bundle, const CommonOptions& options)
      : bundle_(std::move(bundle)), identifier_(options.bundleId) {
    override("ZelvoraPublishableKey", options.key);
    override("ZelvoraLocale", options.locale);
    override("ZelvoraBackendBaseURL", options.baseURL);
    override("ZelvoraSTTMode", options.sttMode);
    if (!stringSetting("ZelvoraPublishableKey")) override("ZelvoraPublishableKey", "demo");
  }

  [[nodiscard]] std::optional<fs::path> resource(const std::string& name,
                                                 const std::string& extension) const override {
    return bundle_->resource(name, extension);
  }

  [[nodiscard]] std::optional<std::string> stringSetting(const std::string& key) const override {
    if (const auto found = overrides_.find(key); found != overrides_.end()) return found->second;
    return bundle_->stringSetting(key);
  }

  [[nodiscard]] std::optional<double> numberSetting(const std::string& key) const override {
    return bundle_->numberSetting(key);
  }

  [[nodiscard]] std::optional<std::string> identifier() const override {
    return identifier_ ? identifier_ : bundle_->identifier();
  }

  [[nodiscard]] std::string description() const override { return bundle_->description(); }

 private:
  void override(const char* key, const std::optional<std::string>& value) {
    if (value) overrides_[key] = *value;
  }

  std::shared_ptr<AppBundle> bundle_;
  std::optional<std::string> identifier_;
  std::map<std::string, std::string> overrides_;
};

HostOptions hostOptions(const CommonOptions& options, std::shared_ptr<Clock> clock,
                        std::shared_ptr<LogSink> log) {
  return {.bundle = options.bundle,
          .dataFolder = dataFolderOf(options),
          .clock = std::move(clock),
          .log = std::move(log)};
}

Platform withOptions(Platform platform, const CommonOptions& options) {
  platform.bundle = std::make_shared<OptionBundle>(std::move(platform.bundle), options);
  return platform;
}

/// The file that the options name, else the bundle's resource, else the project's example. The
/// library complains about a missing resource.
fs::path specFileOf(const CommonOptions& options, const AppBundle& bundle) {
  if (options.spec) return *options.spec;
  if (options.resource) return bundle.resource(*options.resource, "json").value_or(fs::path());
  if (const auto example = findExample("shop.json")) return *example;
  throw UsageError("no spec: name one with --spec FILE");
}

StoredSpec specFor(const CommonOptions& options, const AppBundle& bundle, const fs::path& file) {
  if (options.resource) return requireSpecResource(*options.resource, bundle);
  return specInFile(file);
}

asio::awaitable<std::string> asToken(std::string token) { co_return token; }

/// One line per stage: what was asked, how long it took, what it answered.
void printStage(const StageReport& report) {
  const auto milliseconds = std::round(report.duration.count() * 1e6) / 1e3;
  printError("[" + report.stage + "] '" + report.asked + "' " + shortestDecimal(milliseconds) +
             " ms -> " + report.answer);
}

ZelvoraHooks hooksFor(const CommonOptions& options) {
  ZelvoraHooks hooks;
  std::string token = options.accessToken.value_or("");
  const char* ofEnvironment = std::getenv("ZELVORA_ACCESS_TOKEN");
  if (!options.accessToken && ofEnvironment) token = ofEnvironment;
  if (!token.empty()) hooks.accessToken = [token] { return asToken(token); };
  if (options.verbose) hooks.onStage = printStage;
  return hooks;
}

const CommonOptions& checked(const CommonOptions& options) {
  checkCommonOptions(options);
  return options;
}

std::optional<fs::path> ifFile(fs::path path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored) ? std::optional(std::move(path)) : std::nullopt;
}

std::size_t columnsOfErrors() {
  winsize size{};
  const bool isKnown = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? size.ws_col : 80;
}

/// One screen line. Emoji take two columns, and the library's lines hold a few of them.
std::string onOneLine(std::string_view line) {
  constexpr std::size_t kSpare = 4;
  const std::string shown = escapedForTerminal(firstCharacters(line, kMaxShownError));
  const std::size_t columns = columnsOfErrors();
  if (characterCount(shown) + kSpare <= columns) return shown;
  return std::string(firstCharacters(shown, columns > kSpare ? columns - kSpare : 1)) + "…";
}

}  // namespace

void addCommonOptions(Command& command, CommonOptions& options) {
  std::vector<Option> common = {
      {.name = "--spec",
       .value = "FILE",
       .meaning = "the app spec, a JSON file, full or minimal",
       .otherwise = "the example shop's, where it can be found",
       .take = into(options.spec),
       .completes = Completes::files},
      {.name = "--bundle",
       .value = "DIR",
       .meaning = "an application bundle, a folder with `Info.plist`; settings come from it",
       .take = into(options.bundle),
       .completes = Completes::folders},
      {.name = "--resource",
       .value = "NAME",
       .meaning = "the spec resource in the bundle, without `.json`",
       .take = into(options.resource)},
      {.name = "--locale",
       .value = "L",
       .meaning = "locale identifier",
       .otherwise = "the bundle's, else `en-US`",
       .take = into(options.locale)},
      {.name = "--key",
       .value = "K",
       .meaning = "publishable key",
       .otherwise = "the bundle's, else `demo`",
       .take = into(options.key)},
      {.name = "--base-url",
       .value = "URL",
       .meaning = "backend origin: https, or http on this machine",
       .otherwise = "the bundle's, else the library's default",
       .take = into(options.baseURL)},
      {.name = "--bundle-id",
       .value = "ID",
       .meaning = "bundle identifier",
       .otherwise = "the bundle's, else empty",
       .take = into(options.bundleId)},
      {.name = "--access-token",
       .value = "T",
       .meaning = "backend access token; an empty one counts as none",
       .otherwise = "`ZELVORA_ACCESS_TOKEN`, else the publishable key",
       .take = into(options.accessToken)},
      {.name = "--offline",
       .meaning = "no network: every request fails at once",
       .take = into(options.offline)},
      {.name = "--data-dir",
       .value = "DIR",
       .meaning = "where learning counts live",
       .otherwise = "`zelvora` in `$XDG_DATA_HOME` or `~/.local/share`",
       .take = into(options.dataDir),
       .completes = Completes::folders},
      {.name = "--json",
       .meaning = "one JSON object a line, nothing else on standard output",
       .take = into(options.json)},
      {.name = "--verbose",
       .meaning = "a line a stage on standard error: what was asked, how long it took, what it "
                  "answered",
       .take = into(options.verbose)},
      quietOption(options.quiet)};
  for (Option& option : common) {
    option.isCommon = true;
    command.options.push_back(std::move(option));
  }
}

void checkCommonOptions(const CommonOptions& options) {
  if (options.resource && !options.bundle) throw UsageError("--resource needs --bundle");
  if (options.resource && options.spec)
    throw UsageError("--resource and --spec exclude each other");
  if (options.bundle && !options.resource && !options.spec)
    throw UsageError("--bundle: which spec? Name it with --resource or --spec");
  if (!options.baseURL) return;
  try {
    requireSecure(parseUrl(*options.baseURL));
  } catch (const Error& error) {
    throw UsageError("--base-url: " + error.description());
  }
}

struct Diagnostics::State {
  struct Kept {
    bool isHolding = false;
    bool isMute = false;
    std::vector<std::string> lines;
  };
  bool quiet = false;
  bool isTerminal = errorsGoToTerminal();
  Guarded<Kept> kept;

  void print(const std::string& line) const {
    if (!isTerminal) return printError(line);
    printRaw("\r\033[K" + Style::forDescriptor(STDERR_FILENO).faint(onOneLine(line)) + "\n");
  }
};

Diagnostics::Diagnostics(bool quiet) : state_(std::make_unique<State>()) { state_->quiet = quiet; }
Diagnostics::~Diagnostics() { release(); }

void Diagnostics::write(std::string_view line) {
  if (state_->quiet) return;
  const bool kept = state_->kept.with([&](State::Kept& so) {
    if (so.isHolding && !so.isMute) so.lines.emplace_back(line);
    return so.isHolding || so.isMute;
  });
  if (!kept) state_->print(std::string(line));
}

void Diagnostics::hold() {
  if (state_->isTerminal) state_->kept.with([](State::Kept& so) { so.isHolding = true; });
}

void Diagnostics::release() {
  const auto lines = state_->kept.with([](State::Kept& so) {
    so.isHolding = false;
    return std::exchange(so.lines, {});
  });
  for (const std::string& line : lines) state_->print(line);
}

void Diagnostics::mute(bool isMute) {
  state_->kept.with([isMute](State::Kept& so) { so.isMute = isMute; });
}

/// The clock of the call, which can be set to a moment of the past.
class Application::SessionClock final : public Clock {
 public:
  explicit SessionClock(std::shared_ptr<Clock> clock) : clock_(std::move(clock)) {}
  Timestamp now() override {
    const auto set = moment_.with([](const auto& moment) { return moment; });
    return set ? *set : clock_->now();
  }
  void set(std::optional<Timestamp> moment) {
    moment_.with([moment](auto& current) { current = moment; });
  }

 private:
  std::shared_ptr<Clock> clock_;
  Guarded<std::optional<Timestamp>> moment_;
};

/// The network, unless it is not to be used.
class Application::SessionNetwork final : public UrlSession {
 public:
  SessionNetwork(std::shared_ptr<UrlSession> session, bool isOffline)
      : session_(std::move(session)) {
    setOffline(isOffline);
  }
  asio::awaitable<UrlResponse> send(UrlRequest request) override {
    if (isOffline())
      throw Error("ZelvoraTool", 1, "No network: the tool runs offline, so nothing was asked");
    return session_->send(std::move(request));
  }
  void setOffline(bool isOffline) {
    isOffline_.with([isOffline](bool& current) { current = isOffline; });
  }
  [[nodiscard]] bool isOffline() {
    return isOffline_.with([](const bool& current) { return current; });
  }

 private:
  std::shared_ptr<UrlSession> session_;
  Guarded<bool> isOffline_;
};

Application::Application(const CommonOptions& options)
    : diagnostics_(std::make_shared<Diagnostics>(checked(options).quiet)),
      clock_(std::make_shared<SessionClock>(clockOfEnvironment())),
      host_(loop_.executor(), hostOptions(options, clock_, diagnostics_)),
      platform_(withOptions(host_.platform(), options)),
      settings_(settingsFromPropertyList(*platform_.bundle)),
      specFile_(specFileOf(options, *platform_.bundle)),
      spec_(specFor(options, *platform_.bundle, specFile_)),
      hooks_(hooksFor(options)) {
  network_ = std::make_shared<SessionNetwork>(platform_.urlSession, options.offline);
  platform_.urlSession = network_;
}

void Application::enableSpeech(const Hearing& hearing) {
  platform_.speech = hostSpeech({.vocabulary = recognitionVocabulary(spec_, settings_.locale),
                                 .model = hearing.model,
                                 .modelAlone = hearing.modelAlone,
                                 .soundFile = hearing.soundFile},
                                *platform_.executors, platform_.log);
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

void Application::remember(const std::string& text, Timestamp at) {
  const bool wasOffline = network_->isOffline();
  network_->setOffline(true);
  clock_->set(at);
  diagnostics_->mute(true);
  route(text);
  diagnostics_->mute(false);
  clock_->set(std::nullopt);
  network_->setOffline(wasOffline);
}

std::optional<std::int64_t> Application::recordPick(const std::string& screenId) {
  LearningStore store(platform_.defaults, platform_.log);
  return store.recordChoice(settings_.publishableKey, screenId);
}

std::filesystem::path dataFolderOf(const CommonOptions& options) {
  return options.dataDir ? *options.dataDir : HostOptions::userDataFolder();
}

std::string readInputFile(const std::filesystem::path& path) {
  try {
    return readFile(path);
  } catch (const Error& error) {
    throw UsageError(error.description());
  }
}

StoredSpec specInFile(const std::filesystem::path& path) {
  const std::string bytes = readInputFile(path);
  try {
    return StoredSpec::fromAnyJson(bytes);
  } catch (const Error& error) {
    throw UsageError(path.string() + ": " + error.description());
  }
}

SpecIds idsIn(const StoredSpec& spec) {
  const JsonDocument document = parseJson(toJson(spec));
  const auto textUnder = [](const boost::json::object& task, const char* key) -> std::string {
    const auto* value = task.if_contains(key);
    return value && value->is_string() ? std::string(value->get_string()) : std::string();
  };
  const auto add = [](std::vector<std::string>& list, std::string id) {
    if (!id.empty() && std::ranges::find(list, id) == list.end()) list.push_back(std::move(id));
  };
  SpecIds ids;
  const auto* root = document.root().if_object();
  const auto* tasks = root ? root->if_contains("tasks") : nullptr;
  if (!tasks || !tasks->is_array()) return ids;
  for (const boost::json::value& each : tasks->get_array()) {
    const auto* task = each.if_object();
    if (!task) continue;
    for (const char* key : {"id", "taskId"}) add(ids.tasks, textUnder(*task, key));
    for (const char* key : {"screenId", "screen_id"}) add(ids.screens, textUnder(*task, key));
  }
  return ids;
}

std::optional<std::filesystem::path> findExample(const std::string& name) {
  const fs::path inTree = fs::path("examples/shop") / name;
  if (auto here = ifFile(inTree)) return here;
  std::error_code unknown;
  const fs::path tool = fs::read_symlink("/proc/self/exe", unknown);
  if (unknown) return std::nullopt;
  const fs::path folder = tool.parent_path();
  if (auto installed = ifFile(folder / "../share/zelvora" / inTree)) return installed;
  return ifFile(folder / "../../.." / inTree);  // build/PRESET/bin
}

}  // namespace zelvora::tool
