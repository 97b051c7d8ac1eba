// Any body is a transcript, trimmed and not blank, or ends in the one Error of an empty result.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <ZelvoraSDK/backend/transcription.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zelvora;
  const std::string body(reinterpret_cast<const char*>(data), size);
  try {
    const std::string text = readTranscription({200, body});
    if (isBlank(text) || trimmed(text) != text || !isValidUtf8(text)) std::abort();
  } catch (const Error& failure) {
    if (failure.domain() != kSTTErrorDomain || failure.code() != 0) std::abort();
    if (isValidUtf8(body) && !isBlank(body)) std::abort();
  }
  return 0;
}
