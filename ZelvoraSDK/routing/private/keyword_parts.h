#pragma once

#include <string_view>
#include <vector>

#include <ZelvoraSDK/routing/canonical_text.h>

namespace zelvora {

/// Sets `parts` to what an utterance must contain for a keyword to count, as views of its canonical
/// form: each of its words; or, of a keyword with fewer than two words, the whole of it with the
/// spaces at its ends, even when it is nothing but one. None for an empty keyword.
inline void splitKeyword(std::string_view canonical, std::vector<std::string_view>& parts) {
  parts.clear();
  for (CanonicalWords words(canonical); !words.done(); words.next()) parts.push_back(words.word());
  if (parts.size() < 2 && !canonical.empty()) parts.assign(1, canonical);
}

}  // namespace zelvora
