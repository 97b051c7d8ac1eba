#include <ZelvoraSDK/spec/spec_loader.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/file.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/spec/json_value.h>

#include <optional>
#include <string_view>

namespace zelvora {
namespace {

constexpr int kNotFound = 404;

/// What `attempt` answers; an Error is fatal, with its description between the two texts.
template <class Attempt>
auto orFatal(const std::string& before, const std::string& after, Attempt attempt) {
  try {
    return attempt();
  } catch (const Error& error) {
    fatalError(before + error.description() + after);
  }
}

/// The start of the file for messages.
std::string previewOf(std::string_view bytes) {
  constexpr std::size_t kPreviewBytes = 300;
  const std::string_view start = bytes.substr(0, kPreviewBytes);
  return isValidUtf8(start) ? std::string(start) : "(invalid UTF-8)";
}

}  // namespace

RuntimeSpec ZelvoraSpecLoader::loadFromBundle(const std::string& resource,
                                              const AppBundle& bundle) {
  const auto path = bundle.resource(resource, "json");
  if (!path) throw Error("ZelvoraSpecLoader", kNotFound, resource + ".json not found in bundle");
  return decodeJson<RuntimeSpec>(readFile(*path));
}

AnyEncodable requireSpecResource(const std::string& name, const AppBundle& mainBundle) {
  const std::string file = name + ".json";
  const auto path = mainBundle.resource(name, "json");
  if (!path) fatalError("Missing spec file in app bundle: " + file);

  const std::string bytes =
      orFatal("Failed to read spec file " + file + ": ", "", [&path] { return readFile(*path); });
  if (bytes.empty()) fatalError("Spec file " + file + " is empty.");

  const std::string prefix = ". Prefix: " + previewOf(bytes);
  const JsonDocument document =
      orFatal("Invalid JSON in " + file + " (e.g. trailing commas or syntax error): ", prefix,
              [&bytes] { return parseJson(bytes); });
  // Only proves the schema: what is kept is the document as it is.
  orFatal("Spec schema validation failed for " + file + ": ", prefix,
          [&document] { return JsonCursor(document.root()).as<RuntimeSpec>(); });
  return AnyEncodable(JSONValue(document.root()));
}

}  // namespace zelvora
