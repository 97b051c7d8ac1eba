#include <ZelvoraSDK/speech/transcription_answer.h>

#include <optional>
#include <string_view>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

constexpr int kEmptyResult = 0;
constexpr int kNoHttpResponse = 2;

/// The object's member "text"; absent when the body is not JSON or holds no such string.
std::optional<std::string> textMember(std::string_view body) {
  try {
    const JsonDocument document = parseJson(body);
    return JsonCursor(document.root()).optional<std::string>("text");
  } catch (const Error&) {
    return std::nullopt;
  }
}

std::string readText(std::string_view bodyText) {
  const std::string member = textMember(bodyText).value_or("");
  if (!isBlank(member)) return std::string(trimmed(member));
  if (isBlank(bodyText)) throw Error(kSTTErrorDomain, kEmptyResult, "Empty STT result");
  return std::string(trimmed(bodyText));
}

}  // namespace

std::string readTranscription(const UrlResponse& answer) {
  if (!answer.status) throw Error(kSTTErrorDomain, kNoHttpResponse, "No HTTP response");
  const int status = *answer.status;
  const std::string bodyText = isValidUtf8(answer.body) ? answer.body : std::string();
  if (status >= 200 && status <= 299) return readText(bodyText);
  throw Error(kSTTErrorDomain, status,
              bodyText.empty() ? "STT HTTP " + std::to_string(status) : bodyText);
}

}  // namespace zelvora
