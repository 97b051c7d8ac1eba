#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
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
  std::vector<std::string> values;  ///< In a notice about a text, its number comes first.

  [[nodiscard]] bool isNotice() const { return code >= 700 && code < 800; }
};

/// Assembles answers from bytes as they arrive.
class AnswerReader {
 public:
  void take(std::string_view bytes);
  /// The next answer that is complete. Absent when more bytes are needed, and always once
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

/// `text` as it can be sent: UTF-8, line breaks as "\r\n", and neither NUL nor a lone CR. Once one
/// text was not UTF-8, the daemon refuses every later text of the conversation.
[[nodiscard]] std::string filteredText(std::string_view text);

/// `filtered` with the line that ends it. That line, a dot alone, is the only one of its kind.
/// REQUIRES: a result of `filteredText`.
[[nodiscard]] std::string framedText(std::string_view filtered);

/// Ends a text that was announced and is not wanted any more.
inline constexpr std::string_view kNoText = ".\r\n";

/// "pt_BR.UTF-8" as speech-dispatcher spells it; empty for anything that is no language code, since
/// it might carry commands.
[[nodiscard]] std::string languageCode(std::string_view language);

/// From 0…1 to −100…100, both with the ordinary speed in the middle.
[[nodiscard]] int voiceRate(double rate);

/// Counts the texts of a synthesiser.
using TextNumber = std::uint64_t;

/// A text to say.
struct Text {
  TextNumber number = 0;
  std::string text;
  std::string language;
  double rate = 0.5;
};

/// What the shell around a conversation does next, in this order.
struct Actions {
  struct End {
    TextNumber number = 0;
    bool said = false;  ///< False: cut short or refused.

    bool operator==(const End&) const = default;
  };

  std::string bytes;  ///< To send after everything that is still unsent.
  std::vector<End> ended;
  bool hangUp = false;  ///< Once the bytes are sent; nothing comes after that.
};

/// A whole conversation with speech-dispatcher, from the first byte to the last. Pure: events come
/// in, actions come out.
class Conversation {
 public:
  enum class State {
    idle,       ///< Not begun; texts wait.
    handshake,  ///< The conversation's settings are being sent; texts wait.
    ready,      ///< No answer is outstanding.
    sending,    ///< A command was sent and has no answer yet.
    inText,     ///< A text was sent: the daemon takes nothing else before it has answered.
    closed,     ///< Nothing is sent or read any more.
  };

  [[nodiscard]] State state() const { return state_; }

  /// REQUIRES: called once. Texts given before that wait.
  Actions begin();
  Actions say(Text text);
  /// Silences the current text and drops the waiting ones. The ends of the texts so far are not
  /// reported.
  Actions cancel();
  /// Drops a text whose end no longer matters; it is not reported.
  void forget(TextNumber number);
  /// Silences and hangs up. Reports no ends.
  Actions close();
  /// Takes what the daemon sends. Hangs up on a daemon that passes a limit.
  Actions take(std::string_view bytes);

 private:
  /// A command line, and what its answer leads to.
  struct Command {
    enum class Kind { setting, askLanguage, setLanguage, speak, cancel };
    Kind kind = Kind::setting;
    std::string line;
    std::string language = {};              ///< Of `setLanguage`.
    std::string block = {};                 ///< Of `speak`: sent when the daemon asks for it.
    std::optional<TextNumber> number = {};  ///< Of `speak`; absent: its end is not reported.
  };

  void takeAnswer(const Answer& answer, Actions& actions);
  void takeOutcome(const Command& command, const Answer& answer, Actions& actions);
  void takeQueued(const Answer& answer, Actions& actions);
  void takeNotice(const Answer& notice, Actions& actions);
  void sendNext(Actions& actions);
  void plan(Text text);
  void planLanguage(const std::string& language);

  State state_ = State::idle;
  AnswerReader reader_;
  std::deque<Command> commands_;  ///< Of one text; the first is on its way while `sending`.
  std::deque<Text> waiting_;
  bool cancelWaits_ = false;
  std::optional<TextNumber> current_;         ///< The text that is `inText`.
  std::map<std::string, TextNumber> queued_;  ///< By the number that the daemon gave.
  std::map<std::string, bool> early_;         ///< Notices that came before that number.
  std::string defaultLanguage_;               ///< Empty until the daemon has answered.
  std::string language_;                      ///< Of the next text, unless another is set.
};

}  // namespace zelvora::speechd
