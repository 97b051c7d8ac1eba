#include <ZelvoraSDK/adapters/plist/plist_bundle.h>

#include <system_error>
#include <utility>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/file.h>
#include <ZelvoraSDK/base/limits.h>

namespace zelvora {
namespace {

template <class Value>
std::optional<Value> valueIn(const std::map<std::string, Value>& map, const std::string& key) {
  const auto at = map.find(key);
  return at == map.end() ? std::nullopt : std::optional(at->second);
}

[[noreturn]] void fail(const std::filesystem::path& path, const std::string& cause) {
  throw Error("AppBundle", 1, path.string() + ": " + cause);
}

PropertyListEntries settingsIn(const std::filesystem::path& folder) {
  namespace fs = std::filesystem;
  const fs::path file = folder / "Info.plist";
  std::error_code failure;
  const fs::file_type type = fs::status(file, failure).type();
  if (type == fs::file_type::not_found) return {};
  if (type == fs::file_type::none) fail(file, failure.message());
  if (type != fs::file_type::regular) fail(file, "is no regular file");
  // Before it is all in memory.
  if (fs::file_size(file) > kMaxPropertyListBytes)
    fail(file, "larger than " + std::to_string(kMaxPropertyListBytes) + " bytes");

  const std::string bytes = readFile(file);
  try {
    return readPropertyList(bytes);
  } catch (const Error& error) {
    fail(file, error.description());
  }
}

}  // namespace

PlistBundle::PlistBundle(std::filesystem::path folder) : folder_(std::move(folder)) {
  std::error_code ignored;
  if (!std::filesystem::is_directory(folder_, ignored)) fail(folder_, "is no folder");
  entries_ = settingsIn(folder_);
}

std::optional<std::filesystem::path> PlistBundle::resource(const std::string& name,
                                                           const std::string& extension) const {
  using std::string_view_literals::operator""sv;
  const std::string fileName = name + '.' + extension;
  if (fileName.find_first_of("/\0"sv) != std::string::npos) return std::nullopt;
  std::error_code ignored;
  std::filesystem::path path = folder_ / fileName;
  if (!std::filesystem::is_regular_file(path, ignored)) return std::nullopt;
  return path;
}

std::optional<std::string> PlistBundle::stringSetting(const std::string& key) const {
  return valueIn(entries_.strings, key);
}

std::optional<double> PlistBundle::numberSetting(const std::string& key) const {
  return valueIn(entries_.numbers, key);
}

std::optional<std::string> PlistBundle::identifier() const {
  return stringSetting("CFBundleIdentifier");
}

std::string PlistBundle::description() const { return folder_.string(); }

}  // namespace zelvora
