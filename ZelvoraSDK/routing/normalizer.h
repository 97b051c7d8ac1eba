#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvora {

/// An utterance and its cleaned form.
struct NormalizedCommand {
  std::string originalText;           ///< As given, untrimmed.
  std::string normalizedText;         ///< May be empty.
  std::optional<std::string> locale;  ///< As given.

  bool operator==(const NormalizedCommand&) const = default;
};

/// Cleans an utterance before any routing.
struct Normalizer {
  /// Collapses blanks, lower-cases for English and for no locale at all, cuts the characters
  /// ".,!?:" off the ends and drops the stopwords, ignoring case. Line breaks separate
  /// nothing.
  static std::string normalizedText(std::string_view text, const std::optional<std::string>& locale,
                                    const std::vector<std::string>& stopwords);

  /// The same, together with what it came from.
  static NormalizedCommand normalize(std::string_view text,
                                     const std::optional<std::string>& locale,
                                     const std::vector<std::string>& stopwords);
};

/// The form in which the router compares utterances, keywords and examples: lower-cased words of
/// letters and numbers with one space between them. Quotes and apostrophes vanish ("don't" becomes
/// "dont"); everything else that is neither letter nor number parts words. White space is trimmed
/// before that and not after, so punctuation at an end leaves one space there: "home!" becomes
/// "home ".
[[nodiscard]] std::string normalizeForMatch(std::string_view text);

/// Appends the canonical form of `text`; allocates nothing once `canonical` has the capacity.
void appendNormalizedForMatch(std::string& canonical, std::string_view text);

/// The words of a canonical text, one after the other, as views of it.
///
///     for (CanonicalWords words(text); !words.done(); words.next()) use(words.word());
class CanonicalWords {
 public:
  explicit CanonicalWords(std::string_view canonical) : rest_(canonical) { next(); }

  [[nodiscard]] bool done() const { return word_.empty(); }
  [[nodiscard]] std::string_view word() const { return word_; }

  void next() {
    // Runs of spaces are gone from a canonical text; only one may stand at its start.
    if (rest_.starts_with(' ')) rest_.remove_prefix(1);
    word_ = rest_.substr(0, rest_.find(' '));
    rest_.remove_prefix(word_.size());
  }

 private:
  std::string_view rest_;
  std::string_view word_;
};

}  // namespace zelvora
