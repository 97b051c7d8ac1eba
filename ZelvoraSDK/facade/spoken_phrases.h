#pragma once

#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/backend/transcription.h>
#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/spec/runtime_spec.h>
#include <ZelvoraSDK/spec/stored_spec.h>

namespace zelvora {

/// The keywords that users of `locale` say: the task's own for that locale, else the plain ones.
[[nodiscard]] const std::vector<std::string>& spokenKeywords(const RuntimeSpec::Task& task,
                                                             const std::string& locale);

/// What the cloud recogniser gets along with a recording in `locale`. `spec` is null when the
/// application's spec is not a full one. Absent then, and when the spec's speech settings are off.
[[nodiscard]] std::optional<ZelvoraSTTRequestParams> sttRequestParams(const RuntimeSpec* spec,
                                                                      const std::string& locale);

/// The phrases that the device's recogniser should expect in `locale`, without repeats: titles,
/// keywords and examples of all tasks, and the speech settings' hints. Hand them to the platform's
/// recogniser when the platform is put together.
[[nodiscard]] ZELVORA_EXPORT std::vector<std::string> recognitionVocabulary(
    const RuntimeSpec& spec, const std::string& locale);
/// The same for a spec as the façade takes it; empty when that is not a full one.
[[nodiscard]] ZELVORA_EXPORT std::vector<std::string> recognitionVocabulary(
    const StoredSpec& spec, const std::string& locale);

}  // namespace zelvora
