#include <ZelvoraSDK/adapters/audio/private/pronunciation.h>

#include <flite/flite.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <string_view>

#include <ZelvoraSDK/base/limits.h>
#include <ZelvoraSDK/base/text.h>

// The library exports it, but no header declares it.
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

namespace {

enum class Kind : std::uint8_t { vowel, consonant };

/// Where a phone is made. Vowels: how open and how far back, both from 0 to 1. Consonants: the
/// place from the lips (0) to the throat (1), and the manner from a stop (0) to a glide (1).
struct Sound {
  std::string_view name;
  Kind kind;
  float first;
  float second;
  bool isVoiced = true;
};

using enum Kind;

constexpr std::array kSounds{
    Sound{"AA", vowel, 1.0F, 0.8F},
    Sound{"AE", vowel, 1.0F, 0.35F},
    Sound{"AH", vowel, 0.65F, 0.6F},
    Sound{"AO", vowel, 0.75F, 0.95F},
    Sound{"AW", vowel, 0.85F, 0.75F},
    Sound{"AY", vowel, 0.8F, 0.45F},
    Sound{"B", consonant, 0.0F, 0.0F},
    Sound{"CH", consonant, 0.5F, 0.25F, false},
    Sound{"D", consonant, 0.35F, 0.0F},
    Sound{"DH", consonant, 0.2F, 0.5F},
    Sound{"EH", vowel, 0.7F, 0.3F},
    Sound{"ER", vowel, 0.5F, 0.6F},
    Sound{"EY", vowel, 0.5F, 0.15F},
    Sound{"F", consonant, 0.0F, 0.5F, false},
    Sound{"G", consonant, 0.8F, 0.0F},
    Sound{"HH", consonant, 1.0F, 0.6F, false},
    Sound{"IH", vowel, 0.35F, 0.25F},
    Sound{"IY", vowel, 0.0F, 0.0F},
    Sound{"JH", consonant, 0.5F, 0.25F},
    Sound{"K", consonant, 0.8F, 0.0F, false},
    Sound{"L", consonant, 0.35F, 1.0F},
    Sound{"M", consonant, 0.0F, 0.8F},
    Sound{"N", consonant, 0.35F, 0.8F},
    Sound{"NG", consonant, 0.8F, 0.8F},
    Sound{"OW", vowel, 0.45F, 0.95F},
    Sound{"OY", vowel, 0.55F, 0.7F},
    Sound{"P", consonant, 0.0F, 0.0F, false},
    Sound{"R", consonant, 0.45F, 1.0F},
    Sound{"S", consonant, 0.35F, 0.5F, false},
    Sound{"SH", consonant, 0.5F, 0.5F, false},
    Sound{"T", consonant, 0.35F, 0.0F, false},
    Sound{"TH", consonant, 0.2F, 0.5F, false},
    Sound{"UH", vowel, 0.35F, 0.8F},
    Sound{"UW", vowel, 0.0F, 0.9F},
    Sound{"V", consonant, 0.0F, 0.5F},
    Sound{"W", consonant, 0.0F, 1.0F},
    Sound{"Y", consonant, 0.55F, 1.0F},
    Sound{"Z", consonant, 0.35F, 0.5F},
    Sound{"ZH", consonant, 0.5F, 0.5F},
};
static_assert(kSounds.size() == kPhones);

/// Glides and the vowels that they turn into.
struct Glide {
  std::string_view consonant;
  std::string_view vowel;
  float distance;
};
constexpr std::array kGlides{Glide{"Y", "IY", 0.4F}, Glide{"Y", "IH", 0.5F}, Glide{"W", "UW", 0.4F},
                             Glide{"W", "UH", 0.5F}, Glide{"W", "OW", 0.5F}, Glide{"R", "ER", 0.3F},
                             Glide{"L", "OW", 0.6F}, Glide{"L", "UH", 0.6F}};

float mixedDistance(const Sound& consonantSound, const Sound& vowelSound) {
  for (const Glide& glide : kGlides)
    if (glide.consonant == consonantSound.name && glide.vowel == vowelSound.name)
      return glide.distance;
  return 1;
}

float distanceOf(const Sound& a, const Sound& b) {
  if (a.name == b.name) return 0;
  if (a.kind != b.kind) return a.kind == vowel ? mixedDistance(b, a) : mixedDistance(a, b);
  const float first = std::abs(a.first - b.first);
  const float second = std::abs(a.second - b.second);
  if (a.kind == vowel) return std::min(0.8F, 0.1F + 0.8F * std::hypot(first, second));
  const float voice = a.isVoiced == b.isVoiced ? 0.0F : 0.2F;
  return std::min(1.0F, 0.1F + voice + 0.5F * first + 0.6F * second);
}

using Table = std::array<std::array<float, kPhones>, kPhones>;

const Table& table() {
  static const Table all = [] {
    Table made{};
    for (std::size_t i = 0; i < kPhones; ++i)
      for (std::size_t j = 0; j < kPhones; ++j) made[i][j] = distanceOf(kSounds[i], kSounds[j]);
    return made;
  }();
  return all;
}

/// Sounds that speakers swallow, and schwas.
constexpr std::array<std::string_view, 6> kWeak{"AH", "IH", "HH", "T", "D", "R"};

}  // namespace

std::vector<Phone> phonesOf(std::string_view names) {
  std::vector<Phone> phones;
  while (!names.empty()) {
    const std::size_t end = std::min(names.find(' '), names.size());
    std::string_view name = names.substr(0, end);
    while (!name.empty() && name.back() >= '0' && name.back() <= '9') name.remove_suffix(1);
    const auto found = std::ranges::lower_bound(kSounds, name, {}, &Sound::name);
    if (found != kSounds.end() && found->name == name)
      phones.push_back(static_cast<Phone>(found - kSounds.begin()));
    names.remove_prefix(std::min(end + 1, names.size()));
  }
  return phones;
}

float distance(Phone a, Phone b) { return table()[a][b]; }

float dropCost(Phone phone) {
  static const std::array<float, kPhones> all = [] {
    std::array<float, kPhones> made{};
    for (std::size_t i = 0; i < kPhones; ++i)
      made[i] = std::ranges::find(kWeak, kSounds[i].name) != kWeak.end() ? 0.45F : 0.65F;
    return made;
  }();
  return all[phone];
}

float distance(std::span<const Phone> a, std::span<const Phone> b, float limit) {
  std::vector<float> row(b.size() + 1);
  for (std::size_t j = 0; j < b.size(); ++j) row[j + 1] = row[j] + dropCost(b[j]);
  for (const Phone phone : a) {
    float diagonal = row[0];
    row[0] += dropCost(phone);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const float changed = diagonal + distance(phone, b[j]);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, diagonal + dropCost(phone), row[j] + dropCost(b[j])});
    }
    if (std::ranges::min(row) >= limit) break;
  }
  return row.back();
}

namespace {

bool isSpelt(char letter) { return (letter >= 'a' && letter <= 'z') || letter == '\''; }

bool isUnspeakable(char byte) {
  return static_cast<unsigned char>(byte) >= 0x80 || (byte >= '0' && byte <= '9');
}

std::string_view withoutQuotes(std::string_view word) {
  while (word.starts_with('\'')) word.remove_prefix(1);
  while (word.ends_with('\'')) word.remove_suffix(1);
  return word;
}

Sentence wordsOf(const std::string& phrase) {
  std::string text = lowercased(replacedAll(phrase, "\u2019", "'"));
  if (std::ranges::any_of(text, isUnspeakable)) return {};
  std::ranges::replace_if(
      text, [](char letter) { return !isSpelt(letter); }, ' ');
  Sentence words;
  for (const std::string_view word : splitWords(text))
    if (const auto spelt = withoutQuotes(word); !spelt.empty()) words.emplace_back(spelt);
  return words;
}

}  // namespace

std::vector<Sentence> spokenSentences(const std::vector<std::string>& phrases) {
  std::vector<Sentence> sentences;
  std::size_t count = 0;
  for (const std::string& phrase : phrases) {
    Sentence words = wordsOf(phrase);
    count += words.size();
    if (count > kMaxVocabularyWords) break;
    if (!words.empty()) sentences.push_back(std::move(words));
  }
  return sentences;
}

}  // namespace zelvora::audio
