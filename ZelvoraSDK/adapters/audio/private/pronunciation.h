#pragma once

#include <string>

namespace zelvora::audio {

/// How a speaker of US English would read `word` (a-z and apostrophes): the decoder's phones with
/// spaces between them, "AH K M IY". Empty when nobody can tell. Not thread-safe.
[[nodiscard]] std::string pronunciation(const std::string& word);

}  // namespace zelvora::audio
