#include <string>

#include <ZelvoraSDK/workbench/spec_schema.h>

#include "../commands.h"

namespace zelvora::tool {

Command schemaCommand() {
  Command command{
      .name = "schema",
      .summary = "print the JSON Schema of full specs, for editors",
      .about =
          "Prints the JSON Schema (2020-12) of the full spec file: every key with its type, "
          "what it does and its default. An editor that is given it completes and explains "
          "keys: write it to a file and name that file under `$schema` at the top of the "
          "spec."};
  command.operands = {.shown = "", .most = 0};
  command.run = [](Output& out) {
    out.write(specSchema() + "\n");
    return static_cast<int>(kAnswered);
  };
  return command;
}

}  // namespace zelvora::tool
