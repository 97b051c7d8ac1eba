#pragma once

#include "command_line.h"

namespace zelvora::tool {

struct CommonOptions;

// Each describes one command; `main.cpp` lists them. To add one: declare it here, list it there,
// put it into commands/NAME.cpp and CMakeLists.txt. Its help, man page, completion and the check of
// docs/tool.md follow from the description.
Command routeCommand();
Command explainCommand();
Command chooseCommand();
Command validateCommand();
Command lintCommand();
Command evalCommand();
Command tuneCommand();
Command schemaCommand();
Command initCommand();
Command shellCommand();
Command completionCommand();
/// Serves the completion scripts; not listed.
Command completeCommand(const std::vector<Command>& commands);
/// The man page and the texts of docs/tool.md; not listed.
Command referenceCommand(const std::vector<Command>& commands);
Command serveCommand();   ///< Only with ZELVORA_BUILD_SERVE.
Command listenCommand();  ///< Only with ZELVORA_SPEECH.
Command speakCommand();   ///< Only with ZELVORA_SPEECH.

/// Routes what someone types, one utterance per line, and returns the exit status.
int runShell(const CommonOptions& options, Output& out);

}  // namespace zelvora::tool
