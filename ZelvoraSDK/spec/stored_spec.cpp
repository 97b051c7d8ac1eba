#include <ZelvoraSDK/spec/stored_spec.h>

#include <exception>
#include <utility>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/spec/minimal_spec.h>

namespace zelvora {
namespace {

constexpr int kNotFound = 404;

/// A parsed document that its copies share.
struct SharedDocument {
  std::shared_ptr<const JsonDocument> document;
};

void writeJson(JsonWriter& out, const SharedDocument& shared) { out.value(*shared.document); }

std::optional<RuntimeSpec::Thresholds> thresholdsOf(const MinimalRuntimeSpec& spec) {
  if (!spec.routing || !spec.routing->thresholds) return std::nullopt;
  return spec.routing->thresholds->toRuntimeSpecThresholds();
}

ResolvedSpec resolvedAsFull(RuntimeSpec spec) {
  const auto full = std::make_shared<const RuntimeSpec>(std::move(spec));
  return {.reading = SpecReading::full,
          .reason = {},
          .spec = full,
          .runtimeSpec = full,
          .thresholds = full->routing.thresholds};
}

/// The document as a minimal spec, with `whyNotFull` in its reason; absent when it is neither.
std::optional<ResolvedSpec> resolvedAsMinimal(const JsonCursor& root,
                                              const std::string& whyNotFull) {
  try {
    auto minimal = std::make_shared<const MinimalRuntimeSpec>(root.as<MinimalRuntimeSpec>());
    if (minimal->tasks().empty()) return std::nullopt;
    return ResolvedSpec{.reading = SpecReading::minimal,
                        .reason = "Only the tasks of this spec are used: " + whyNotFull,
                        .spec = minimal,
                        .runtimeSpec = nullptr,
                        .thresholds = thresholdsOf(*minimal)};
  } catch (const Error&) {
    return std::nullopt;
  }
}

/// Throws Error for a document that fits neither model, and says why it is not a full spec.
ResolvedSpec resolvedOrThrow(const JsonDocument& document) {
  const JsonCursor root(document.root());
  try {
    return resolvedAsFull(root.as<RuntimeSpec>());
  } catch (const Error& whyNotFull) {
    if (auto minimal = resolvedAsMinimal(root, whyNotFull.description()))
      return *std::move(minimal);
    throw;
  }
}

/// Returns what `resolve` returns; anything it throws becomes the reason why there is no spec. The
/// encoded value may be the application's own type, which can throw anything.
template <class Resolve>
ResolvedSpec resolvedOrNone(Resolve resolve) {
  try {
    return resolve();
  } catch (...) {
    return {.reason = "This spec can't be used: " + describeFailure(std::current_exception())};
  }
}

/// Returns what `attempt` returns; an Error is fatal, with its description between the two texts.
template <class Attempt>
auto orFatal(const std::string& before, const std::string& after, Attempt attempt) {
  try {
    return attempt();
  } catch (const Error& error) {
    fatalError(before + error.description() + after);
  }
}

/// The start of the file, for messages.
std::string previewOf(std::string_view bytes) {
  constexpr std::size_t kPreviewBytes = 300;
  const std::string_view start = bytes.substr(0, kPreviewBytes);
  return isValidUtf8(start) ? std::string(start) : "(invalid UTF-8)";
}

}  // namespace

std::optional<std::string> ResolvedSpec::libraryLine() const {
  if (reading == SpecReading::full) return std::nullopt;
  return "[Zelvora][Spec] " + reason;
}

StoredSpec StoredSpec::fromJson(std::string_view text) {
  auto document = std::make_shared<const JsonDocument>(parseJson(text));
  ResolvedSpec resolved = resolvedOrThrow(*document);
  return {AnyEncodable(SharedDocument{std::move(document)}), std::move(resolved)};
}

StoredSpec StoredSpec::fromAnyJson(std::string_view text) {
  auto document = std::make_shared<const JsonDocument>(parseJson(text));
  ResolvedSpec resolved = resolvedOrNone([&document] { return resolvedOrThrow(*document); });
  return {AnyEncodable(SharedDocument{std::move(document)}), std::move(resolved)};
}

StoredSpec StoredSpec::fromFile(const std::filesystem::path& path) {
  const std::string text = readFile(path);
  try {
    return fromJson(text);
  } catch (const Error& error) {
    throw Error(error.domain(), error.code(), path.string() + ": " + error.description());
  }
}

ResolvedSpec StoredSpec::resolve() const {
  if (resolved_) return *resolved_;
  return resolvedOrNone([this] { return resolvedOrThrow(parseJson(toJson(document_))); });
}

RuntimeSpec ZelvoraSpecLoader::loadFromBundle(const std::string& resource,
                                              const AppBundle& bundle) {
  const auto path = bundle.resource(resource, "json");
  if (!path) throw Error("ZelvoraSpecLoader", kNotFound, resource + ".json not found in bundle");
  return decodeJson<RuntimeSpec>(readFile(*path));
}

StoredSpec requireSpecResource(const std::string& name, const AppBundle& mainBundle) {
  const std::string file = name + ".json";
  const auto path = mainBundle.resource(name, "json");
  if (!path) fatalError("Missing spec file in app bundle: " + file);

  const std::string bytes =
      orFatal("Failed to read spec file " + file + ": ", "", [&path] { return readFile(*path); });
  if (bytes.empty()) fatalError("Spec file " + file + " is empty.");

  const std::string prefix = ". Prefix: " + previewOf(bytes);
  auto document = std::make_shared<const JsonDocument>(
      orFatal("Invalid JSON in " + file + " (e.g. trailing commas or syntax error): ", prefix,
              [&bytes] { return parseJson(bytes); }));
  RuntimeSpec full =
      orFatal("Spec schema validation failed for " + file + ": ", prefix,
              [&document] { return JsonCursor(document->root()).as<RuntimeSpec>(); });
  return {AnyEncodable(SharedDocument{std::move(document)}), resolvedAsFull(std::move(full))};
}

}  // namespace zelvora
