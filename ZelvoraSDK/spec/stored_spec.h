#pragma once

#include <concepts>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/spec/runtime_spec.h>

namespace zelvora {

/// How much of a spec could be read from a document.
enum class SpecReading {
  full,     ///< Everything works.
  minimal,  ///< Tasks only: no stopwords, context or speech settings.
  none,     ///< No usable task: nothing can be scored on the device.
};

/// A stored spec as the pipelines need it.
struct ZELVORA_EXPORT ResolvedSpec {
  SpecReading reading = SpecReading::none;
  std::string reason;                       ///< A sentence on why it is not full; empty when it is.
  std::shared_ptr<const ZelvoraSpec> spec;  ///< Null when `reading` is `none`.
  std::shared_ptr<const RuntimeSpec> runtimeSpec;  ///< The same spec when it is full, else null.
  std::optional<RuntimeSpec::Thresholds> thresholds;

  /// What to write to the log the first time that this spec is used; absent for a full one.
  [[nodiscard]] std::optional<std::string> libraryLine() const;
};

/// Owns any value that `JsonWriter` can write, and hides its type; it is written as the value
/// itself. Copies share the value, which nothing can change. Plain text is not accepted, so that
/// nobody passes JSON text where a document is wanted: see `StoredSpec::fromJson`, and
/// `JSONValue("text")` for a JSON string.
class AnyEncodable {
 public:
  template <class T>
    requires(!std::same_as<std::remove_cvref_t<T>, AnyEncodable> &&
             !std::convertible_to<const T&, std::string_view>)
  explicit AnyEncodable(T&& value) : encode_(encoderOf(std::forward<T>(value))) {}

  friend void writeJson(JsonWriter& out, const AnyEncodable& any) { any.encode_(out); }

 private:
  template <class T>
  static std::function<void(JsonWriter&)> encoderOf(T&& value) {
    auto kept = std::make_shared<const std::remove_cvref_t<T>>(std::forward<T>(value));
    return [kept = std::move(kept)](JsonWriter& out) { out.value(*kept); };
  }

  std::function<void(JsonWriter&)> encode_;
};

/// The application's spec as the façade keeps it: the document, and how it reads. Immutable;
/// copies share what they hold. Nothing is validated, see `ZelvoraSpec::validateSpec()`.
///
///     Zelvora zelvora(platform, settings, StoredSpec::fromFile("shop.json"));
class ZELVORA_EXPORT StoredSpec {
 public:
  /// Any value that encodes as a spec. It is encoded and decoded when it is resolved.
  StoredSpec(AnyEncodable value) : document_(std::move(value)) {}  // NOLINT: on purpose implicit

  /// A spec from JSON text, parsed and decoded here and only once. Throws Error: with line and
  /// column for text that is not JSON, with the coding path when it is neither a full spec nor a
  /// minimal one with a usable task.
  [[nodiscard]] static StoredSpec fromJson(std::string_view text);

  /// The same for any JSON: a document that is not a spec is kept and reads as `none`.
  [[nodiscard]] static StoredSpec fromAnyJson(std::string_view text);

  /// Like `fromJson`, but reads a file; its path starts the error's description. Also throws Error
  /// in the domain "POSIX".
  [[nodiscard]] static StoredSpec fromFile(const std::filesystem::path& path);

  /// Reads the document as a full spec, else as a minimal one with at least one usable task. Costs
  /// nothing for a spec that came from JSON; any other value is encoded each time, so keep the
  /// result. Never throws. Fatal on a minimal spec with a task that breaks the record's
  /// preconditions.
  [[nodiscard]] ResolvedSpec resolve() const;

  friend void writeJson(JsonWriter& out, const StoredSpec& spec) { writeJson(out, spec.document_); }

 private:
  StoredSpec(AnyEncodable document, ResolvedSpec resolved)
      : document_(std::move(document)), resolved_(std::move(resolved)) {}
  friend StoredSpec requireSpecResource(const std::string& name, const AppBundle& mainBundle);

  AnyEncodable document_;
  std::optional<ResolvedSpec> resolved_;
};

/// Loads specs from an application's bundle. Can't be instantiated. Validates nothing.
struct ZELVORA_EXPORT ZelvoraSpecLoader {
  ZelvoraSpecLoader() = delete;

  /// Decodes the resource `resource`.json. Throws Error: code 404 in the domain "ZelvoraSpecLoader"
  /// when the bundle has no such resource, else any error of reading or decoding it.
  static RuntimeSpec loadFromBundle(const std::string& resource, const AppBundle& bundle);
};

/// The full spec in the resource `name`.json of the application's own bundle. A missing,
/// unreadable, empty, ill-formed or incomplete spec is a fatal error.
ZELVORA_EXPORT StoredSpec requireSpecResource(const std::string& name, const AppBundle& mainBundle);

}  // namespace zelvora
