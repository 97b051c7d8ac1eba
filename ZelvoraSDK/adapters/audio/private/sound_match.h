#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/audio/private/pronunciation.h>
#include <ZelvoraSDK/platform/speech.h>

namespace zelvora::audio {

/// The phones of a word with spaces between them; empty when they are unknown.
using Pronounce = std::function<std::string(const std::string& word)>;

/// How much a transcript is like what the application expects. Shares of its phones, in [0, 1],
/// except `run`.
struct Closeness {
  double inContext = 0;  ///< In words with the neighbours that a phrase gives them.
  double changed = 0;    ///< In words that the match put in.
  double strange = 0;    ///< In words of no phrase, by how much the recogniser believes them.
  double run = 0;        ///< Phones of the longest run of words as in a phrase; 1: twelve or more.
};

/// A transcript after the match.
struct SoundMatch {
  std::vector<SpeechSegment> words;
  Closeness closeness;
};

/// The application's phrases, by their sound. Immutable once made, so callable from any thread.
class SoundVocabulary {
 public:
  using Sentence = std::vector<std::string>;

  SoundVocabulary() = default;
  /// Takes some 10 ms for a thousand phrases.
  SoundVocabulary(const std::vector<Sentence>& sentences, const Pronounce& pronounce);

  /// Replaces what sounds almost like a part of a phrase by that part, where its neighbours make it
  /// likely and the transcript as a whole is about the application. A transcript that is doubtful
  /// or, as the caller says, opens nothing becomes the one whole phrase that it sounds most like.
  [[nodiscard]] SoundMatch match(std::span<const SpeechSegment> heard, const Pronounce& pronounce,
                                 bool opensNothing = false) const;

  /// Whether these are all the words of a phrase.
  [[nodiscard]] bool isPhrase(const Sentence& words) const;

  [[nodiscard]] bool isEmpty() const { return grams_.empty(); }

 private:
  friend class MatchSearch;

  static constexpr std::size_t kMaxGramWords = 3;
  static constexpr int kEdge = 0;      ///< The beginning and the end of a phrase.
  static constexpr int kUnknown = -1;  ///< A word that no phrase has.

  /// One to three words of a phrase.
  struct Gram {
    std::array<int, kMaxGramWords> words{};
    std::size_t size = 0;
    int nextOfSameSound = -1;
  };
  /// A node of the tree of phones.
  struct Node {
    Phone phone = 0;
    int sibling = -1;
    int child = -1;
    int gram = -1;  ///< The first one whose phones end here.
  };

  void addPhrase(const std::vector<int>& words, const std::vector<std::vector<Phone>>& phones);
  void addGram(std::span<const int> words, const std::vector<std::vector<Phone>>& phones);
  int childOf(int node, Phone phone);
  [[nodiscard]] int idOf(const std::string& word) const;
  [[nodiscard]] bool isNeighbour(int before, int after) const;
  static std::uint64_t pairOf(int before, int after);

  std::vector<std::string> words_;        ///< By id; the first one is the edge.
  std::vector<std::size_t> phoneCounts_;  ///< By id.
  std::unordered_map<std::string, int> ids_;
  std::unordered_set<std::uint64_t> neighbours_;
  std::vector<Node> nodes_ = std::vector<Node>(1);  ///< The first one is the root.
  std::vector<Gram> grams_;
  std::set<std::vector<int>> phraseWords_;
  /// The words of phrases that can be recognised by their whole sound, keyed by that sound.
  std::map<std::vector<Phone>, std::vector<int>> phrases_;
};

}  // namespace zelvora::audio
