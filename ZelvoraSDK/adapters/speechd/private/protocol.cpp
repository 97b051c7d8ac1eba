#include <ZelvoraSDK/adapters/speechd/private/protocol.h>

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

}  // namespace zelvora::speechd
