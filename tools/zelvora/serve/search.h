#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "destination.h"

namespace zelvora::serve {

struct Hit {
  std::size_t index = 0;  ///< Among the destinations searched.
  double confidence = 0;  ///< In (0, 1].

  bool operator==(const Hit&) const = default;
};

/// The destinations that share a word with `text`, best first, ties in their order. Words are
/// compared by their stem in the language of `locale`, where there is a stemmer for it, and English
/// filler words count for nothing; the ranking is BM25, a title counting three times.
///
/// A confidence is the product of two shares. Coverage: how much of the text's words the
/// destination has, each word weighing the more the fewer destinations have it, an unknown one
/// most. Certainty: w² / (w² + r²) for its weight w and that of its strongest rival r, so a tie
/// leaves one half.
std::vector<Hit> search(const std::vector<Destination>& destinations, std::string_view text,
                        std::string_view locale);

}  // namespace zelvora::serve
