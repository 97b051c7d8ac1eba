#pragma once

#include <memory>
#include <optional>
#include <string>

#include <ZelvoraSDK/async/actor.h>
#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/facade/backend_stages.h>
#include <ZelvoraSDK/facade/prepared_spec.h>
#include <ZelvoraSDK/facade/settings.h>
#include <ZelvoraSDK/facade/stage_report.h>
#include <ZelvoraSDK/platform/platform.h>
#include <ZelvoraSDK/routing/learning_store.h>
#include <ZelvoraSDK/routing/local_router.h>
#include <ZelvoraSDK/routing/session_memory.h>

namespace zelvora {

/// Turns one utterance into one outcome, stage by stage: clean it, score it on the device, then ask
/// the backend. Callable from any thread; overlapping calls are not serialised, and the last one to
/// finish writes the session memory last. A call under way keeps the pipeline alive.
class TextPipeline : public std::enable_shared_from_this<TextPipeline> {
 public:
  /// What a pipeline is put together from.
  struct Parts {
    Platform platform;
    ZelvoraSettings settings;
    std::shared_ptr<const Lazy<PreparedSpec>> spec;
    std::shared_ptr<BackendStages> backend;
    std::shared_ptr<const StageReporter> reporter;
  };

  explicit TextPipeline(Parts parts);

  /// Throws Error when a backend stage fails.
  asio::awaitable<ZelvoraResult> route(std::string text);

  /// Counts the user's pick of a screen.
  asio::awaitable<void> recordChoice(std::string screenId);

 private:
  using Self = std::shared_ptr<TextPipeline>;

  static asio::awaitable<ZelvoraResult> routeText(Self self, std::string text);
  static asio::awaitable<StageYield> scoreLocally(Self self, std::string utterance);
  static asio::awaitable<ZelvoraResult> askBackend(Self self, std::string utterance);
  static asio::awaitable<ZelvoraResult> remembered(Self self, ZelvoraResult result);

  [[nodiscard]] std::string cleaned(std::string text) const;
  asio::awaitable<StageYield> stage(const char* name, const std::string& utterance,
                                    asio::awaitable<StageYield> work) const;

  Parts parts_;
  ZelvoraLocalRouter router_;
  Actor<SessionMemory> memory_;
  Actor<LearningStore> learning_;
};

}  // namespace zelvora
