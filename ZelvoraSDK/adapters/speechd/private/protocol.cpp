#include <ZelvoraSDK/adapters/speechd/private/protocol.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include <ZelvoraSDK/platform/speech.h>

namespace zelvora::speechd {
namespace {

constexpr std::size_t kCodeLength = 3;

bool isLetterOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

}  // namespace

std::optional<Answer> AnswerReader::take(std::string_view line) {
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

std::string textBlock(std::string_view text) {
  std::string block;
  bool atLineStart = true;
  for (const char c : text) {
    if (atLineStart && c == '.') block += '.';
    if (c == '\n') block += '\r';
    if (c != '\r' && c != '\0') block += c;
    atLineStart = c == '\n';
  }
  return block + "\r\n.\r\n";
}

std::string languageCode(std::string_view language) {
  std::string code(language.substr(0, language.find('.')));
  std::replace(code.begin(), code.end(), '_', '-');
  const bool isCode =
      std::all_of(code.begin(), code.end(), [](char c) { return isLetterOrDigit(c) || c == '-'; });
  return isCode ? code : std::string();
}

int voiceRate(double rate) {
  const double centred = (std::clamp(rate, 0.0, 1.0) - SpeechUtterance::kDefaultRate) * 200;
  return static_cast<int>(std::lround(centred));
}

}  // namespace zelvora::speechd
