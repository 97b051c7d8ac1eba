#include <ZelvoraSDK/ui/private/choice_text.h>

#include <array>
#include <charconv>

namespace zelvora {

QString ChoiceText::confidence(double value) {
  // As printf rounds, halves to even: Qt's own and JavaScript's formatting round them up.
  std::array<char, 320> text{};
  const auto end = std::to_chars(text.begin(), text.end(), value, std::chars_format::fixed, 2).ptr;
  return QString::fromLatin1(text.data(), end - text.data());
}

}  // namespace zelvora
