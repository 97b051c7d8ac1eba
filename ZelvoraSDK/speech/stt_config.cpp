#include <ZelvoraSDK/speech/stt_config.h>

#include <string>

#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

constexpr ZelvoraSTTMode kModes[] = {ZelvoraSTTMode::localOnly, ZelvoraSTTMode::cloudOnly,
                                     ZelvoraSTTMode::hybrid, ZelvoraSTTMode::disabled};

}  // namespace

std::string_view toString(ZelvoraSTTMode mode) {
  switch (mode) {
    case ZelvoraSTTMode::localOnly: return "localOnly";
    case ZelvoraSTTMode::cloudOnly: return "cloudOnly";
    case ZelvoraSTTMode::hybrid: return "hybrid";
    case ZelvoraSTTMode::disabled: return "disabled";
  }
  return "";
}

std::optional<ZelvoraSTTMode> sttModeFromString(std::string_view word) {
  for (const ZelvoraSTTMode mode : kModes)
    if (word == toString(mode)) return mode;
  return std::nullopt;
}

ZelvoraSTTConfig sttConfigFromSetting(std::string_view word) {
  const std::string lowered = lowercased(word);
  if (lowered == "cloudonly") return ZelvoraSTTConfig::cloudOnly();
  if (lowered == "hybrid") return ZelvoraSTTConfig::hybrid();
  if (lowered == "disabled") return ZelvoraSTTConfig::disabled();
  return ZelvoraSTTConfig::localOnly();
}

void readJson(const JsonCursor& in, ZelvoraSTTConfig& config) {
  const JsonCursor at = in.child("mode");
  const auto mode = sttModeFromString(at.as<std::string>());
  if (!mode) at.fail(JsonErrorCode::typeMismatch, "unknown speech mode");
  config.mode = *mode;
  in.read("cloudFallbackEnabled", config.cloudFallbackEnabled);
}

void writeJson(JsonWriter& out, const ZelvoraSTTConfig& config) {
  out.beginObject();
  out.member("mode", toString(config.mode));
  out.member("cloudFallbackEnabled", config.cloudFallbackEnabled);
  out.endObject();
}

}  // namespace zelvora
