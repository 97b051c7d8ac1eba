#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace zelvora::tool {

/// What the call asks for; answers the exit status.
using Run = std::function<int()>;

// Each teaches `tool` one command and sets `run` when the call names it.
void addRouteCommand(CLI::App& tool, Run& run);
void addExplainCommand(CLI::App& tool, Run& run);
void addChooseCommand(CLI::App& tool, Run& run);
void addValidateCommand(CLI::App& tool, Run& run);
void addServeCommand(CLI::App& tool, Run& run);  ///< Only with ZELVORA_BUILD_SERVE.
// Only with ZELVORA_SPEECH.
void addListenCommand(CLI::App& tool, Run& run);
void addSpeakCommand(CLI::App& tool, Run& run);

}  // namespace zelvora::tool
