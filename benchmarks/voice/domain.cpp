#include <benchmarks/voice/domain.h>

#include <fstream>
#include <iterator>
#include <string_view>
#include <variant>

#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/facade/spoken_phrases.h>
#include <benchmarks/voice/clips.h>

namespace zelvora::bench {
namespace {

StoredSpec specIn(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(file), {});
  return StoredSpec::fromAnyJson(bytes);
}

}  // namespace

Domain::Domain(const std::filesystem::path& spec)
    : spec_(specIn(spec)), vocabulary_(recognitionVocabulary(spec_, kLocale)), prepared_(spec_) {}

std::string Domain::taskOf(const std::string& text) const {
  const std::string normalized = cleanUtterance(text, prepared_, kLocale).normalized;
  if (normalized.empty() || !prepared_.tasks()) return {};
  const RouteLocally route = [&](std::string_view candidate) {
    return prepared_.tasks()->route(candidate, prepared_.thresholds());
  };
  const auto answer = answerLocally(normalized, prepared_, kLocale, route, {});
  if (const auto* execute = std::get_if<ZelvoraExecute>(&answer.result))
    return execute->taskId.value_or("");
  const auto* present = std::get_if<ZelvoraPresent>(&answer.result);
  return present ? present->taskId.value_or("") : "";
}

}  // namespace zelvora::bench
