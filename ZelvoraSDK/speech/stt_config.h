#pragma once

#include <optional>
#include <string_view>

#include <ZelvoraSDK/base/json_fwd.h>
#include <ZelvoraSDK/base/library.h>

namespace zelvora {

/// Where speech is turned into text. The enumerators are spelled as on the wire.
enum class ZelvoraSTTMode { localOnly, cloudOnly, hybrid, disabled };

[[nodiscard]] ZELVORA_EXPORT std::string_view toString(ZelvoraSTTMode mode);
/// The mode spelled exactly so; absent for any other word.
[[nodiscard]] ZELVORA_EXPORT std::optional<ZelvoraSTTMode> sttModeFromString(std::string_view word);

struct ZELVORA_EXPORT ZelvoraSTTConfig {
  ZelvoraSTTMode mode = ZelvoraSTTMode::localOnly;
  bool cloudFallbackEnabled = false;

  static constexpr ZelvoraSTTConfig localOnly() { return {ZelvoraSTTMode::localOnly, false}; }
  static constexpr ZelvoraSTTConfig cloudOnly() { return {ZelvoraSTTMode::cloudOnly, true}; }
  static constexpr ZelvoraSTTConfig hybrid() { return {ZelvoraSTTMode::hybrid, true}; }
  static constexpr ZelvoraSTTConfig disabled() { return {ZelvoraSTTMode::disabled, false}; }

  bool operator==(const ZelvoraSTTConfig&) const = default;
};

/// The preset that a property list's word asks for, whatever its case; `localOnly` for any word
/// that is none.
[[nodiscard]] ZELVORA_EXPORT ZelvoraSTTConfig sttConfigFromSetting(std::string_view word);

/// Both keys are required; an unknown mode is a type mismatch.
ZELVORA_EXPORT void readJson(const JsonCursor& in, ZelvoraSTTConfig& config);
ZELVORA_EXPORT void writeJson(JsonWriter& out, const ZelvoraSTTConfig& config);

}  // namespace zelvora
