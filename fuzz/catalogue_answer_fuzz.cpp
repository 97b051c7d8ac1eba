// Any body is a catalogue answer or ends in one Error; an answer leads to a screen or to nothing.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <variant>

#include <ZelvoraSDK/backend/catalogue.h>
#include <ZelvoraSDK/backend/exchange.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zelvora;
  try {
    const auto answer = readCatalogAnswer({200, {reinterpret_cast<const char*>(data), size}});
    const auto result = catalogResult(answer);
    if (result && isBlank(std::get<ZelvoraExecute>(*result).screenId)) std::abort();
  } catch (const Error& failure) {
    if (!isValidUtf8(failure.description()) || failure.description().empty()) std::abort();
  }
  return 0;
}
