#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace zelvora::tool {

/// What every command that routes understands. Unset ones fall back to the bundle, then to
/// defaults.
struct CommonOptions {
  std::optional<std::filesystem::path> spec;
  std::optional<std::filesystem::path> bundle;
  std::optional<std::string> resource;
  std::optional<std::string> locale;
  std::optional<std::string> key;
  std::optional<std::string> baseURL;
  std::optional<std::string> bundleId;
  std::optional<std::string> accessToken;  ///< Empty counts as none.
  std::optional<std::string> sttMode;      ///< Of the command that listens.
  std::optional<std::filesystem::path> dataDir;
  bool offline = false;
  bool json = false;
  bool verbose = false;
};

/// Makes `command` understand the options; they are in `options` once the call has been read.
void addCommonOptions(CLI::App& command, CommonOptions& options);

}  // namespace zelvora::tool
