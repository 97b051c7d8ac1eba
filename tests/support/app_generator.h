#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace zelvora::testing {

/// Makes up large applications: specs and utterances from 20,000 words, some far more common than
/// others (Zipf's law), a tenth of them Hebrew. The same seed gives the same ones on every system.
class AppGenerator {
 public:
  explicit AppGenerator(std::uint64_t seed);

  /// A full spec, as JSON. A task has 4 one-word keywords, 4 of two words, and 6 examples of 5.
  std::string specJson(std::size_t taskCount);

  /// 3 to 12 words.
  std::string utterance();
  std::vector<std::string> utterances(std::size_t count);
  /// Words up to `bytes` bytes.
  std::string utteranceOf(std::size_t bytes);

 private:
  std::size_t below(std::size_t limit);
  void growVocabulary();
  std::string newWord(std::size_t rank);
  const std::string& word();
  std::string phrase(std::size_t words);
  std::vector<std::string> phrases(std::size_t count, std::size_t words);

  std::mt19937_64 engine_;
  std::vector<std::string> vocabulary_;  ///< The commonest first.
  std::vector<double> upTo_;             ///< The share of the words up to each rank.
};

}  // namespace zelvora::testing
