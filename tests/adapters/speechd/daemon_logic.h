#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

namespace zelvora::testing {

/// What speech-dispatcher 0.11 does with the bytes of one client, as pure logic. A text ends when
/// the test asks for it. A module keeps its voice when it does not know a language.
class DaemonLogic {
 public:
  bool refusesTexts = false;
  bool endsEarly = false;  ///< Sends the end of a text before its number.

  std::vector<std::string> commands;  ///< As they came, without line ends.
  std::vector<std::string> texts;     ///< Those that were not empty.
  /// Voice and text, in the order of speaking.
  std::vector<std::pair<std::string, std::string>> said;
  int unfinished = 0;  ///< Texts that are being said or are waiting.

  /// What the daemon answers.
  std::string take(const std::string& bytes) {
    received_ += bytes;
    std::string answers;
    for (;;) {
      const bool inText = isInText_;
      const auto end = inText ? endOfText() : received_.find("\r\n");
      if (end == std::string::npos) return answers;
      const std::string part = received_.substr(0, end);
      const bool isAbandoned = inText && received_.starts_with(".\r\n");
      received_.erase(0, end + (isAbandoned ? 3 : inText ? 5 : 2));
      answers += isAbandoned ? abandonText() : inText ? takeText(part) : takeCommand(part);
    }
  }

  /// Ends all texts, as if they had been said.
  std::string finish() {
    std::string notices;
    for (; !queue_.empty(); queue_.pop_front()) notices += notice("702", "END", queue_.front());
    unfinished = 0;
    return notices;
  }

 private:
  [[nodiscard]] std::size_t endOfText() const {
    if (received_.starts_with(".\r\n")) return 0;
    return received_.find("\r\n.\r\n");
  }

  static std::string notice(const std::string& code, const std::string& word, int number) {
    return code + "-" + std::to_string(number) + "\r\n" + code + "-4\r\n" + code + " " + word +
           "\r\n";
  }

  std::string takeCommand(const std::string& command) {
    commands.push_back(command);
    if (command == "GET LANGUAGE") return "251-en\r\n251 OK GET RETURNED\r\n";
    if (command == "SPEAK") {
      if (refusesTexts) return "300 ERR INTERNAL\r\n";
      isInText_ = true;
      return "230 OK RECEIVING DATA\r\n";
    }
    if (command.starts_with("SET SELF LANGUAGE ")) language_ = command.substr(18);
    if (command == "CANCEL SELF") {
      std::string answer = "213 OK CANCELED\r\n";
      for (; !queue_.empty(); queue_.pop_front())
        answer += notice("703", "CANCELED", queue_.front());
      unfinished = 0;
      return answer;
    }
    return "200 OK\r\n";
  }

  std::string takeText(const std::string& text) {
    isInText_ = false;
    if (language_ == "en" || language_.starts_with("de")) voice_ = language_;
    said.emplace_back(voice_, text);
    if (!text.empty()) texts.push_back(text);
    const std::string number = std::to_string(++last_);
    const std::string queued = "225-" + number + "\r\n225 OK MESSAGE QUEUED\r\n";
    if (endsEarly) return notice("702", "END", last_) + queued;
    queue_.push_back(last_);
    ++unfinished;
    return queued;
  }

  std::string abandonText() {
    isInText_ = false;
    return "227 OK MESSAGE CANCELED\r\n";
  }

  std::string received_;
  bool isInText_ = false;
  std::string language_ = "en";
  std::string voice_ = "en";
  int last_ = 0;
  std::deque<int> queue_;
};

}  // namespace zelvora::testing
