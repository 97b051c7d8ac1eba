#pragma once

#include <string>
#include <vector>

#include <ZelvoraSDK/adapters/audio/private/vocabulary.h>

namespace zelvora::sphinx {

/// A trigram model of the sentences in the ARPA format. What was seen gives up half a count each
/// (absolute discounting), which is left to what was not. Pure.
[[nodiscard]] std::string arpaTrigram(const std::vector<audio::Sentence>& sentences);

}  // namespace zelvora::sphinx
