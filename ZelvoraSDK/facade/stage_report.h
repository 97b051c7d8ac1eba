#pragma once

#include <functional>
#include <memory>
#include <string>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// What one stage of the text pipeline did, for tools that show their work. Holds no secret.
struct StageReport {
  std::string stage;   ///< "local", "semantic", "catalogue" or "interpret".
  std::string asked;   ///< The utterance as the stage saw it.
  std::string answer;  ///< The outcome in short, "nothing", or the error's description.
  Seconds duration{};
};

/// Times the stages of a pipeline and tells whoever listens. Shared by the calls under way.
struct StageReporter {
  std::shared_ptr<Clock> clock;
  std::function<void(StageReport)> listener;  ///< Called on any thread; may be unset.
};

/// What a stage yielded: an outcome, or nothing, and then the next stage is asked.
using StageYield = std::optional<ZelvoraResult>;

/// Awaits `work` and reports it; its failure is reported and passed on.
asio::awaitable<StageYield> reported(std::shared_ptr<const StageReporter> reporter,
                                     std::string stage, std::string asked,
                                     asio::awaitable<StageYield> work);

}  // namespace zelvora
