#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvora::speechd {

// The language of speech-dispatcher's socket, SSIP: lines from either side, one answer to each
// command, and notices in between. Pure.

/// What the codes of answers mean.
inline constexpr int kReceivingText = 230;
inline constexpr int kTextQueued = 225;
inline constexpr int kValueFollows = 251;
inline constexpr int kTextSaid = 702;
inline constexpr int kTextCut = 703;

/// An answer or a notice.
struct Answer {
  int code = 0;
  std::vector<std::string> values;  ///< For news of a text, its number comes first.

  [[nodiscard]] bool isNotice() const { return code >= 700 && code < 800; }
};

/// Puts answers together from bytes as they come.
class AnswerReader {
 public:
  void take(std::string_view bytes);
  /// The next answer that is complete. Absent when more bytes are needed, and for good once
  /// `isOverfull`.
  std::optional<Answer> next();
  /// Whether an answer passed `kMaxSpeechReplyLineBytes` or `kMaxSpeechReplyLines`.
  [[nodiscard]] bool isOverfull() const { return isOverfull_; }

 private:
  std::optional<Answer> takeLine(std::string_view line);

  std::string received_;
  std::vector<std::string> values_;
  bool isOverfull_ = false;
};

/// `text` as it can travel: UTF-8, line breaks as "\r\n", and neither NUL nor a lone CR. The daemon
/// refuses every later text of a conversation once one was not UTF-8.
[[nodiscard]] std::string filteredText(std::string_view text);

/// `filtered` with the line that ends it. That line, a dot alone, is the only one of its kind.
/// REQUIRES: a result of `filteredText`.
[[nodiscard]] std::string framedText(std::string_view filtered);

/// Ends a text that was announced and is not wanted any more.
inline constexpr std::string_view kNoText = ".\r\n";

/// "pt_BR.UTF-8" as speech-dispatcher spells it; empty for what is no language code, which might
/// carry commands.
[[nodiscard]] std::string languageCode(std::string_view language);

/// From 0…1 to −100…100, both with the ordinary speed in the middle.
[[nodiscard]] int voiceRate(double rate);

}  // namespace zelvora::speechd
