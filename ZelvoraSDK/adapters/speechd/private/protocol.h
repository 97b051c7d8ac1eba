#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvora::speechd {

// The language of speech-dispatcher's socket, SSIP: lines from either side, one answer to each
// command, and notices in between.

/// What the codes of answers mean.
inline constexpr int kReceivingText = 230;
inline constexpr int kTextQueued = 225;
inline constexpr int kTextSaid = 702;
inline constexpr int kTextCut = 703;

/// An answer or a notice.
struct Answer {
  int code = 0;
  std::vector<std::string> values;  ///< For what is told of a text, its number comes first.

  [[nodiscard]] bool isNotice() const { return code >= 700 && code < 800; }
};

/// Puts answers together from lines.
class AnswerReader {
 public:
  /// A line without its end; the answer that it completes.
  std::optional<Answer> take(std::string_view line);

 private:
  std::vector<std::string> values_;
};

/// A text as it is sent: it can't end the text by itself.
std::string textBlock(std::string_view text);

/// "pt_BR.UTF-8" as speech-dispatcher spells it; empty for what is no language code, which might
/// carry commands.
std::string languageCode(std::string_view language);

/// From 0…1 to −100…100, both with the ordinary speed in the middle.
int voiceRate(double rate);

}  // namespace zelvora::speechd
