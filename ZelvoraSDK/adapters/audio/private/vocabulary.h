#pragma once

#include <string>
#include <vector>

namespace zelvora::audio {

/// The words of a phrase, as a dictionary spells them.
using Sentence = std::vector<std::string>;

/// The phrases as a speaker of English says them: lower case, without punctuation. A phrase with a
/// digit or a letter outside ASCII is left out: nobody knows how it sounds. Ends before the
/// phrase whose words would be more than `kMaxVocabularyWords` in all. Pure.
[[nodiscard]] std::vector<Sentence> spokenSentences(const std::vector<std::string>& phrases);

}  // namespace zelvora::audio
