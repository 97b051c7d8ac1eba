#include <ZelvoraSDK/spec/spec_resolution.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/spec/minimal_spec.h>

#include <utility>

namespace zelvora {
namespace {

/// Absent when the document does not decode as a T.
template <class T>
std::shared_ptr<const T> tryDecode(const JsonDocument& document) {
  try {
    return std::make_shared<const T>(JsonCursor(document.root()).as<T>());
  } catch (const Error&) {
    return nullptr;
  }
}

std::optional<JsonDocument> documentOf(const AnyEncodable& stored) {
  try {
    return parseJson(toJson(stored));
  } catch (const std::exception&) {
    // The value may be the application's own type and throw whatever it likes.
    return std::nullopt;
  }
}

std::optional<RuntimeSpec::Thresholds> thresholdsOf(const MinimalRuntimeSpec& spec) {
  if (!spec.routing || !spec.routing->thresholds) return std::nullopt;
  return spec.routing->thresholds->toRuntimeSpecThresholds();
}

}  // namespace

std::optional<ResolvedSpec> resolveSpec(const AnyEncodable& stored) {
  const std::optional<JsonDocument> document = documentOf(stored);
  if (!document) return std::nullopt;
  if (auto full = tryDecode<RuntimeSpec>(*document))
    return ResolvedSpec{full, full, full->routing.thresholds};
  const auto minimal = tryDecode<MinimalRuntimeSpec>(*document);
  if (!minimal || minimal->tasks().empty()) return std::nullopt;
  return ResolvedSpec{minimal, nullptr, thresholdsOf(*minimal)};
}

}  // namespace zelvora
