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
  /// ".,!?:" off the ends and drops the stopwords, whatever their case. Line breaks separate
  /// nothing.
  static std::string normalizedText(std::string_view text, const std::optional<std::string>& locale,
                                    const std::vector<std::string>& stopwords);

  /// The same, together with what it came from.
  static NormalizedCommand normalize(std::string_view text,
                                     const std::optional<std::string>& locale,
                                     const std::vector<std::string>& stopwords);
};

}  // namespace zelvora
