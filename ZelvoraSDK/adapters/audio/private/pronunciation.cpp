#include <ZelvoraSDK/adapters/audio/private/pronunciation.h>

#include <flite/flite.h>

#include <memory>

// The library exports it and declares it nowhere.
extern "C" cst_lexicon* cmulex_init();

namespace zelvora::audio {
namespace {

struct DeletePhones {
  void operator()(cst_val* phones) const { delete_val(phones); }
};

/// "ax0" → "AH": without stress, and with the name that the acoustic model has for the schwa.
std::string decoderPhone(const char* phone) {
  std::string name;
  for (; *phone; ++phone)
    if (*phone >= 'a' && *phone <= 'z') name += static_cast<char>(*phone - 'a' + 'A');
  return name == "AX" ? "AH" : name;
}

}  // namespace

std::string pronunciation(const std::string& word) {
  static const cst_lexicon* const lexicon = cmulex_init();
  std::string letters = word;
  std::erase(letters, '\'');
  if (letters.empty()) return {};
  const std::unique_ptr<cst_val, DeletePhones> phones(
      lex_lookup(lexicon, letters.c_str(), nullptr, nullptr));
  std::string spoken;
  for (const cst_val* rest = phones.get(); rest; rest = val_cdr(rest))
    spoken += (spoken.empty() ? "" : " ") + decoderPhone(val_string(val_car(rest)));
  return spoken;
}

}  // namespace zelvora::audio
