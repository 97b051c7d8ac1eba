#pragma once

#include <string>

#include <ZelvoraSDK/platform/clock.h>

namespace zelvora {

/// What one stage of the text pipeline did, for tools that show their work. Holds no secret.
struct StageReport {
  std::string stage;   ///< "local", "semantic", "catalogue" or "interpret".
  std::string asked;   ///< The utterance as the stage saw it.
  std::string answer;  ///< The outcome in short, "nothing", or the error's description.
  Seconds duration{};
};

}  // namespace zelvora
