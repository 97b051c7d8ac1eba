#include <ZelvoraSDK/base/uuid.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>

namespace zelvora {
namespace {

using UuidBytes = std::array<std::uint8_t, 16>;

UuidBytes randomBytes() {
  std::random_device device;
  UuidBytes bytes{};
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(device());
  return bytes;
}

}  // namespace

std::string randomUuid() {
  constexpr char kDigits[] = "0123456789ABCDEF";
  UuidBytes bytes = randomBytes();
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);  // version 4: random
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);  // the common variant

  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 0x0F];
  }
  return text;
}

}  // namespace zelvora
