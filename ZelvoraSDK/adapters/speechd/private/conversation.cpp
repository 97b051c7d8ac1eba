#include <ZelvoraSDK/adapters/speechd/private/conversation.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include <ZelvoraSDK/base/limits.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/platform/speech.h>

namespace zelvora::speechd {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kCodeLength = 3;

bool isLetterOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

}  // namespace

void AnswerReader::take(std::string_view bytes) {
  if (!isOverfull_) received_.append(bytes);
}

std::optional<Answer> AnswerReader::next() {
  while (!isOverfull_) {
    const std::size_t end = received_.find(kLineEnd);
    const std::size_t halfAnEnd = received_.ends_with('\r') ? 1 : 0;
    const std::size_t length = std::min(end, received_.size() - halfAnEnd);
    isOverfull_ = length > kMaxSpeechReplyLineBytes || values_.size() > kMaxSpeechReplyLines;
    if (isOverfull_ || end == std::string::npos) break;
    auto answer = takeLine(std::string_view(received_).substr(0, end));
    received_.erase(0, end + kLineEnd.size());
    if (answer) return answer;
  }
  return std::nullopt;
}

std::optional<Answer> AnswerReader::takeLine(std::string_view line) {
  const std::string_view rest = line.substr(std::min(line.size(), kCodeLength + 1));
  // "225-7" comes before "225 OK MESSAGE QUEUED".
  if (line.size() > kCodeLength && line[kCodeLength] == '-') {
    values_.emplace_back(rest);
    return std::nullopt;
  }
  Answer answer{.values = std::exchange(values_, {})};
  const std::string_view code = line.substr(0, kCodeLength);
  std::from_chars(code.data(), code.data() + code.size(), answer.code);
  return answer;
}

std::string filteredText(std::string_view text) {
  std::string filtered;
  for (const char c : repairedUtf8(text)) {
    if (c == '\r' || c == '\0') continue;
    if (c == '\n') filtered += '\r';
    filtered += c;
  }
  return filtered;
}

std::string framedText(std::string_view filtered) {
  std::string framed;
  bool atLineStart = true;
  for (const char c : filtered) {
    if (atLineStart && c == '.') framed += '.';
    framed += c;
    atLineStart = c == '\n';
  }
  return framed + "\r\n.\r\n";
}

std::string languageCode(std::string_view language) {
  std::string code(language.substr(0, language.find('.')));
  std::replace(code.begin(), code.end(), '_', '-');
  const bool isCode =
      code.size() <= kMaxLanguageCodeBytes &&
      std::all_of(code.begin(), code.end(), [](char c) { return isLetterOrDigit(c) || c == '-'; });
  return isCode ? code : std::string();
}

int voiceRate(double rate) {
  const double centred = (std::clamp(rate, 0.0, 1.0) - SpeechUtterance::kDefaultRate) * 200;
  return static_cast<int>(std::lround(centred));
}

namespace {

constexpr std::string_view kCancel = "CANCEL SELF\r\n";
constexpr std::string_view kSpeak = "SPEAK\r\n";
/// A daemon sends at most the notices of one text before its number.
constexpr std::size_t kMaxEarlyNotices = 16;

}  // namespace

Actions Conversation::begin() {
  using enum Command::Kind;
  state_ = State::handshake;
  commands_ = {{setting, "SET SELF CLIENT_NAME unknown:zelvora:main\r\n"},
               {setting, "SET SELF PRIORITY MESSAGE\r\n"},
               {setting, "SET SELF NOTIFICATION END ON\r\n"},
               {setting, "SET SELF NOTIFICATION CANCEL ON\r\n"},
               {askLanguage, "GET LANGUAGE\r\n"}};
  return {.bytes = commands_.front().line};
}

Actions Conversation::say(Text text) {
  if (state_ == State::closed) return {.ended = {{text.number, false}}};
  waiting_.push_back(std::move(text));
  Actions actions;
  if (state_ == State::ready) sendNext(actions);
  return actions;
}

Actions Conversation::cancel() {
  Actions actions;
  waiting_.clear();
  queued_.clear();
  // Until the handshake is over nothing has been said, and its commands must stay.
  if (state_ == State::ready || state_ == State::sending || state_ == State::inText) {
    cancelWaits_ = true;
    current_.reset();
    if (state_ == State::sending) {
      commands_.resize(1);
      commands_.front().block.clear();
      commands_.front().number.reset();
    }
    if (state_ == State::ready) sendNext(actions);
  }
  return actions;
}

void Conversation::forget(TextNumber number) {
  std::erase_if(waiting_, [=](const Text& text) { return text.number == number; });
  std::erase_if(queued_, [=](const auto& text) { return text.second == number; });
  if (current_ == number) current_.reset();
  for (Command& command : commands_)
    if (command.number == number) command.number.reset();
}

Actions Conversation::close() {
  const bool announced = state_ == State::sending && commands_.front().kind == Command::Kind::speak;
  const bool silences =
      state_ == State::ready || state_ == State::sending || state_ == State::inText;
  state_ = State::closed;
  Actions actions{.hangUp = true};
  // If the daemon is about to ask for a text, it takes a command for that text.
  if (announced) actions.bytes += kNoText;
  if (silences) actions.bytes += kCancel;
  return actions;
}

Actions Conversation::take(std::string_view bytes) {
  Actions actions;
  if (state_ == State::closed) return actions;
  reader_.take(bytes);
  while (const auto answer = reader_.next()) {
    if (answer->isNotice())
      takeNotice(*answer, actions);
    else
      takeAnswer(*answer, actions);
  }
  if (reader_.isOverfull()) {
    state_ = State::closed;
    actions.hangUp = true;
  }
  return actions;
}

void Conversation::takeAnswer(const Answer& answer, Actions& actions) {
  switch (state_) {
    case State::handshake:
    case State::sending: {
      const Command command = std::move(commands_.front());
      commands_.pop_front();
      return takeOutcome(command, answer, actions);
    }
    case State::inText: return takeQueued(answer, actions);
    case State::idle:
    case State::ready:
    case State::closed: return;  // Nothing was asked.
  }
}

void Conversation::takeOutcome(const Command& command, const Answer& answer, Actions& actions) {
  using enum Command::Kind;
  if (command.kind == askLanguage && answer.code == kValueFollows && !answer.values.empty())
    language_ = defaultLanguage_ = languageCode(answer.values[0]);
  if (command.kind == setLanguage) language_ = command.language;
  if (command.kind == speak && answer.code == kReceivingText) {
    state_ = State::inText;
    current_ = command.number;
    actions.bytes += command.block.empty() ? kNoText : std::string_view(command.block);
    return;
  }
  if (command.kind == speak && command.number) actions.ended.push_back({*command.number, false});
  sendNext(actions);
}

void Conversation::takeQueued(const Answer& answer, Actions& actions) {
  const bool isQueued = answer.code == kTextQueued && !answer.values.empty();
  const auto early = isQueued ? early_.extract(answer.values[0]) : decltype(early_)::node_type();
  if (current_ && isQueued && !early)
    queued_[answer.values[0]] = *current_;
  else if (current_)
    actions.ended.push_back({*current_, early && early.mapped()});
  early_.clear();
  current_.reset();
  sendNext(actions);
}

void Conversation::takeNotice(const Answer& notice, Actions& actions) {
  if (notice.values.empty() || (notice.code != kTextSaid && notice.code != kTextCut)) return;
  const bool said = notice.code == kTextSaid;
  if (const auto text = queued_.extract(notice.values[0]))
    actions.ended.push_back({text.mapped(), said});
  else if (state_ == State::inText && early_.size() < kMaxEarlyNotices)
    early_[notice.values[0]] = said;
}

void Conversation::sendNext(Actions& actions) {
  if (state_ != State::handshake || commands_.empty()) state_ = State::sending;
  if (commands_.empty() && std::exchange(cancelWaits_, false))
    commands_.push_back({Command::Kind::cancel, std::string(kCancel)});
  while (commands_.empty() && !waiting_.empty()) {
    Text text = std::move(waiting_.front());
    waiting_.pop_front();
    const TextNumber number = text.number;
    plan(std::move(text));
    if (commands_.empty()) actions.ended.push_back({number, false});
  }
  if (commands_.empty())
    state_ = State::ready;
  else
    actions.bytes += commands_.front().line;
}

/// Plans the commands that say `text`; none if nothing of it can be said.
void Conversation::plan(Text text) {
  using enum Command::Kind;
  const std::string filtered = filteredText(text.text);
  if (filtered.empty()) return;
  planLanguage(languageCode(text.language));
  commands_.push_back({setting, "SET SELF RATE " + std::to_string(voiceRate(text.rate)) + "\r\n"});
  commands_.push_back({.kind = speak,
                       .line = std::string(kSpeak),
                       .block = framedText(filtered),
                       .number = text.number});
}

/// A language without a voice is spoken in the default one. But the daemon then stays with the
/// voice that spoke last, so the default one says nothing first.
void Conversation::planLanguage(const std::string& language) {
  using enum Command::Kind;
  const auto set = [this](const std::string& code) {
    commands_.push_back(
        {.kind = setLanguage, .line = "SET SELF LANGUAGE " + code + "\r\n", .language = code});
  };
  const std::string& wanted = language.empty() ? defaultLanguage_ : language;
  if (wanted == language_) return;
  if (wanted != defaultLanguage_ && !defaultLanguage_.empty()) {
    set(defaultLanguage_);
    commands_.push_back({.kind = speak, .line = std::string(kSpeak), .block = framedText("")});
  }
  set(wanted);
}

}  // namespace zelvora::speechd
