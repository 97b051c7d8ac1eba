// For any recording and any fields, the form has just the parts that were put in, byte for byte.

#include <fuzz/input.h>

#include <ZelvoraSDK/backend/transcription.h>
#include <ZelvoraSDK/base/error.h>

namespace {

using namespace zelvora;

constexpr const char* kBoundary = "Boundary-9D1A7B1E-9F3C-4C53-8F4E-0B1D6A3C2E55";

/// The contents of the parts of a form, taken apart as a server does.
std::vector<std::string> partsOf(std::string_view form) {
  const std::string between = "\r\n--" + std::string(kBoundary);
  const std::string text = "\r\n" + std::string(form);
  std::vector<std::string> parts;
  std::size_t at = 0;
  fuzz::require(text.starts_with(between));
  for (at += between.size(); text.compare(at, 4, "--\r\n") != 0; at += between.size()) {
    const std::size_t headersEnd = text.find("\r\n\r\n", at);
    const std::size_t end = text.find(between, at);
    fuzz::require(headersEnd < end && end != text.npos);
    parts.push_back(text.substr(headersEnd + 4, end - headersEnd - 4));
    at = end;
  }
  fuzz::require(at + 4 == text.size());
  return parts;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::textOf(data, size);
  if (text.find(kBoundary) != text.npos) return 0;
  const std::vector<std::string> pieces = fuzz::piecesOf(text);
  const std::string audio = fuzz::pieceAt(pieces, 0);
  RecordedSpeech speech{.locale = fuzz::pieceAt(pieces, 1)};
  const auto* const bytes = reinterpret_cast<const AudioData::value_type*>(audio.data());
  speech.audio.assign(bytes, bytes + audio.size());
  if (pieces.size() > 2)
    speech.sttParams = ZelvoraSTTRequestParams{.language = fuzz::pieceAt(pieces, 2),
                                               .prompt = fuzz::pieceAt(pieces, 3)};
  const Url base{.scheme = "https", .host = "example.com", .port = "", .path = "", .query = ""};
  const UrlRequest request =
      transcriptionRequest(base, speech, {.accessToken = "token", .boundary = kBoundary});
  const std::vector<std::string> parts = partsOf(request.body);
  fuzz::require(parts.size() == (speech.sttParams ? 3 : 1) && parts.back() == audio);
  if (speech.sttParams)
    fuzz::require(parts[0] == speech.sttParams->language && parts[1] == speech.sttParams->prompt);
  return 0;
}
