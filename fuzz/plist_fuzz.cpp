// Any bytes either give entries of whole UTF-8 text or end in one Error.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <ZelvoraSDK/adapters/plist/plist_bundle.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const auto entries = zelvora::readPropertyList({reinterpret_cast<const char*>(data), size});
    for (const auto& [key, text] : entries.strings)
      require(zelvora::isValidUtf8(key) && zelvora::isValidUtf8(text));
    for (const auto& [key, number] : entries.numbers)
      require(zelvora::isValidUtf8(key) && std::isfinite(number));
  } catch (const zelvora::Error& error) {
    require(error.domain() == "PropertyList" && !error.description().empty());
  }
  return 0;
}
