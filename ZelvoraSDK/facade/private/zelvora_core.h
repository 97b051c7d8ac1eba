#pragma once

#include <boost/asio/post.hpp>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include <ZelvoraSDK/async/call_scope.h>
#include <ZelvoraSDK/async/callbacks.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/facade/text_pipeline.h>
#include <ZelvoraSDK/facade/voice_pipeline.h>
#include <ZelvoraSDK/zelvora.h>

namespace zelvora {

/// Delivers one outcome. If it is destroyed first, that outcome says that nothing can be routed.
class OneOutcome {
 public:
  explicit OneOutcome(std::function<void(ZelvoraResult)> deliver)
      : deliver_(std::make_unique<std::function<void(ZelvoraResult)>>(std::move(deliver))) {}
  OneOutcome(OneOutcome&&) noexcept = default;
  OneOutcome& operator=(OneOutcome&&) = delete;
  ~OneOutcome() {
    if (deliver_) give(ZelvoraUnsupported{"The background threads have ended"});
  }

  void give(ZelvoraResult result) {
    const auto deliver = std::exchange(deliver_, nullptr);
    (*deliver)(std::move(result));
  }

 private:
  std::unique_ptr<std::function<void(ZelvoraResult)>> deliver_;
};

/// What the façade owns. A call under way holds it, so it may outlive the façade; by then its scope
/// is closed and its slots are empty.
class Zelvora::Core {
 public:
  using Scope = std::shared_ptr<CallScope>;
  using Deliver = std::function<void(ZelvoraResult)>;

  Core(Platform platform, ZelvoraSettings settings, StoredSpec storedSpec, ZelvoraHooks hooks);

  /// None of the application's code is called after this.
  void close() noexcept;

  /// Routes in the background and calls `deliver` with the one outcome, on any thread; does so even
  /// after the background threads have ended.
  static void routeInBackground(std::shared_ptr<Core> core, Scope within, std::string text,
                                Deliver deliver);
  /// Calls `completion` on the main executor while `within` is open.
  template <class Value>
  std::function<void(Value)> onMain(Scope within, std::function<void(Value)> completion) const;

  /// Returns the one outcome of `text`: a failure is an outcome too, and each outcome is logged.
  static asio::awaitable<ZelvoraResult> routeReported(std::shared_ptr<Core> core, Scope within,
                                                      std::string text);
  static std::shared_ptr<VoicePipeline> makeVoice(const std::shared_ptr<Core>& core,
                                                  std::weak_ptr<Callbacks> callbacks);

  Platform platform;  ///< Its log never throws.
  ZelvoraSettings settings;
  asio::any_io_executor mainExecutor;  ///< For the release, which calls no port any more.
  AccessTokenProvider accessToken;
  AccessTokenProvider freshAccessToken;
  Scope scope;
  Slot<ZelvoraResult> onResult;
  Slot<ZelvoraAuditEvent> onAuditEvent;
  Slot<std::string> onTranscript;
  Slot<StageReport> onStage;
  std::shared_ptr<const Lazy<PreparedSpec>> spec;
  std::shared_ptr<TextPipeline> text;
  /// What the voice pipeline calls: the slots, while the façade lives.
  std::shared_ptr<Callbacks> callbacks;

 private:
  static asio::awaitable<void> routeAndDeliver(std::shared_ptr<Core> core, Scope within,
                                               std::string text, OneOutcome outcome);
};

template <class Value>
std::function<void(Value)> Zelvora::Core::onMain(Scope within,
                                                 std::function<void(Value)> completion) const {
  return [executors = platform.executors, within = std::move(within),
          completion = std::move(completion)](Value value) {
    asio::post(executors->main(), [within, completion, value = std::move(value)] {
      within->enter([&] {
        if (completion) completion(value);
      });
    });
  };
}

/// Nobody waits for the task, so its exception can only be written to the log.
inline auto logFailure(std::shared_ptr<LogSink> log) {
  return [log = std::move(log)](const std::exception_ptr& failure) {
    log->write("[Zelvora] background work failed: " + describeFailure(failure));
  };
}

}  // namespace zelvora
