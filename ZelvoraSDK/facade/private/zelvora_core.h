#pragma once

#include <exception>
#include <memory>
#include <string>
#include <utility>

#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/facade/prepared_spec.h>
#include <ZelvoraSDK/facade/text_pipeline.h>
#include <ZelvoraSDK/facade/zelvora.h>

namespace zelvora {

/// What the façade owns. A call under way holds it, so that it may outlive the façade.
class Zelvora::Core {
 public:
  Core(Platform platform, ZelvoraSettings settings, StoredSpec spec, ZelvoraHooks hooks);

  /// Routes in the background, then tells `callbacks` on the main executor if they are still there.
  static asio::awaitable<void> routeAndDeliver(std::shared_ptr<Core> core,
                                               std::weak_ptr<Callbacks> callbacks,
                                               std::string text);
  static void routeInBackground(std::shared_ptr<Core> core, std::weak_ptr<Callbacks> callbacks,
                                std::string text);
  /// What `routeAndCallback` delivers: a failure is an outcome, and each outcome is logged.
  static asio::awaitable<ZelvoraResult> routeReported(std::shared_ptr<Core> core, std::string text);
  static std::shared_ptr<VoicePipeline> makeVoice(const std::shared_ptr<Core>& core,
                                                  std::weak_ptr<Callbacks> callbacks);

  Platform platform;
  ZelvoraSettings settings;
  AccessTokenProvider accessToken;
  AccessTokenProvider freshAccessToken;
  std::function<void(std::string)> onTranscript;
  std::shared_ptr<const Lazy<PreparedSpec>> spec;
  std::shared_ptr<TextPipeline> text;
};

/// What escapes from a task that nobody waits for can only be told to the log.
inline auto logFailure(std::shared_ptr<LogSink> log) {
  return [log = std::move(log)](const std::exception_ptr& failure) {
    log->write("[Zelvora] background work failed: " + describeFailure(failure));
  };
}

}  // namespace zelvora
