#include <ZelvoraSDK/adapters/pocketsphinx/private/decoder.h>

#include <locale.h>
#include <pocketsphinx.h>
#include <sphinxbase/cmn.h>
#include <sphinxbase/err.h>
#include <sphinxbase/feat.h>
#include <sphinxbase/ngram_model.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/audio/private/pronunciation.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora::sphinx {

using audio::Sentence;

namespace {

/// `value` with exactly `digits` decimals, rounded as printf does but independent of the C locale:
/// 1.25 and 1 give "1.2". REQUIRES: a finite value and at most 20 digits.
std::string fixedDecimal(double value, int digits) {
  std::array<char, 340> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                 std::chars_format::fixed, digits);
  return {text.data(), end.ptr};
}

constexpr double kDiscount = 0.5;
constexpr double kNever = -99;  ///< log10 of 0, as the format writes it.
constexpr std::size_t kOrder = 3;

using Gram = std::vector<std::string>;
/// What followed a history, and how often.
struct Followers {
  std::map<std::string, double> counts;
  double total = 0;  ///< Kept, so that the time stays proportional to the vocabulary.
};
/// By history, which has one word less than the order.
using Counts = std::array<std::map<Gram, Followers>, kOrder>;

Counts countOf(const std::vector<Sentence>& sentences) {
  Counts counts;
  for (const Sentence& sentence : sentences) {
    Gram words{"<s>"};
    words.insert(words.end(), sentence.begin(), sentence.end());
    words.emplace_back("</s>");
    for (std::ptrdiff_t end = 1; end < std::ssize(words); ++end)
      for (std::ptrdiff_t past = 0; past < std::ptrdiff_t{kOrder} && past <= end; ++past) {
        Followers& followers = counts[static_cast<std::size_t>(past)]
                                     [Gram(words.begin() + end - past, words.begin() + end)];
        ++followers.counts[words[static_cast<std::size_t>(end)]];
        ++followers.total;
      }
  }
  return counts;
}

class ArpaModel {
 public:
  explicit ArpaModel(const std::vector<Sentence>& sentences) : counts_(countOf(sentences)) {}

  [[nodiscard]] std::string text() const {
    std::array<std::string, kOrder> grams;
    std::array<std::size_t, kOrder> sizes{};
    for (std::size_t past = 0; past < kOrder; ++past)
      for (const auto& [history, followers] : counts_[past])
        for (const auto& [word, count] : followers.counts) {
          grams[past] += line(history, word, std::log10(probability(history, word)));
          ++sizes[past];
        }
    grams[0] += line({}, "<s>", kNever);
    ++sizes[0];
    return assembled(grams, sizes);
  }

 private:
  /// Of a word that followed `history`. Without a history nothing is discounted: all words are
  /// known.
  [[nodiscard]] double probability(const Gram& history, const std::string& word) const {
    const Followers& followers = counts_[history.size()].at(history);
    const double given = history.empty() ? 0 : kDiscount;
    return (followers.counts.at(word) - given) / followers.total;
  }

  /// The factor on the probabilities after the shorter history, for words that never followed
  /// `history`; 1 when nothing ever did.
  [[nodiscard]] double backOff(const Gram& history) const {
    const auto found = counts_[history.size()].find(history);
    if (found == counts_[history.size()].end()) return 1;
    const Followers& followers = found->second;
    const Gram shorter(history.begin() + 1, history.end());
    double left = 1;
    for (const auto& [word, count] : followers.counts) left -= probability(shorter, word);
    const double given = kDiscount * static_cast<double>(followers.counts.size()) / followers.total;
    return left > 1e-9 ? given / left : 1;
  }

  [[nodiscard]] std::string line(const Gram& history, const std::string& word,
                                 double logProbability) const {
    std::string text = fixedDecimal(logProbability, 5);
    Gram gram = history;
    gram.push_back(word);
    for (std::size_t i = 0; i < gram.size(); ++i) text += (i == 0 ? '\t' : ' ') + gram[i];
    if (gram.size() < kOrder) text += '\t' + fixedDecimal(std::log10(backOff(gram)), 5);
    return text + '\n';
  }

  static std::string assembled(const std::array<std::string, kOrder>& grams,
                               const std::array<std::size_t, kOrder>& sizes) {
    std::string text = "\\data\\\n";
    for (std::size_t past = 0; past < kOrder; ++past)
      text += "ngram " + std::to_string(past + 1) + "=" + std::to_string(sizes[past]) + '\n';
    for (std::size_t past = 0; past < kOrder; ++past)
      text += "\n\\" + std::to_string(past + 1) + "-grams:\n" + grams[past];
    return text + "\n\\end\\\n";
  }

  Counts counts_;
};

}  // namespace

std::string arpaTrigram(const std::vector<Sentence>& sentences) {
  return ArpaModel(sentences).text();
}

namespace {

using audio::Sentence;

// Below the folder of the models.
constexpr const char* kAcousticModel = "en-us/en-us";
constexpr const char* kLanguageModel = "en-us/en-us.lm.bin";
constexpr const char* kDictionary = "en-us/cmudict-en-us.dict";
constexpr const char* kSearch = "zelvora";

/// Puts this thread into the C locale while it exists. The library reads numbers by the thread's
/// locale, and in a German one "-0.30103" would be 0.
class PlainNumbers {
 public:
  PlainNumbers() : before_(::uselocale(plain_)) {}
  ~PlainNumbers() {
    ::uselocale(before_);
    ::freelocale(plain_);
  }
  PlainNumbers(const PlainNumbers&) = delete;
  PlainNumbers& operator=(const PlainNumbers&) = delete;

 private:
  locale_t plain_ = ::newlocale(LC_ALL_MASK, "C", nullptr);
  locale_t before_;
};

struct FreeConfig {
  void operator()(cmd_ln_t* config) const { cmd_ln_free_r(config); }
};
struct FreeModel {
  void operator()(ngram_model_t* model) const { ngram_model_free(model); }
};
using Model = std::unique_ptr<ngram_model_t, FreeModel>;

Error cannotRead(const std::string& what) {
  return {"ZelvoraSpeechRecognizer", 2, "The speech recogniser can't read its " + what};
}

/// A file in memory, for a library that reads models from files only.
class MemoryFile {
 public:
  explicit MemoryFile(std::string_view content) : file_(memfd_create("model", MFD_CLOEXEC)) {
    while (file_ >= 0 && !content.empty()) {
      const ssize_t written = write(file_, content.data(), content.size());
      if (written <= 0) break;
      content.remove_prefix(static_cast<std::size_t>(written));
    }
    isComplete_ = file_ >= 0 && content.empty();
  }
  ~MemoryFile() {
    if (file_ >= 0) close(file_);
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  [[nodiscard]] bool isComplete() const { return isComplete_; }
  [[nodiscard]] std::string path() const { return "/proc/self/fd/" + std::to_string(file_); }

 private:
  int file_;
  bool isComplete_ = false;
};

void logNothing(void*, err_lvl_t, const char*, ...) {}

ps_decoder_t* decoderWithoutSearch(const std::filesystem::path& models) {
  err_set_callback(&logNothing, nullptr);
  // The library logs its list of settings without using the callback.
  err_set_logfp(nullptr);
  // The second pass costs a tenth of a second after the last word. More than 5,000 states per frame
  // cost a sixth of all the time and help nothing.
  const std::unique_ptr<cmd_ln_t, FreeConfig> config(
      cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", (models / kAcousticModel).c_str(), "-dict",
                  (models / kDictionary).c_str(), "-fwdflat", "no", "-bestpath", "yes", "-maxhmmpf",
                  "5000", nullptr));
  return config ? ps_init(config.get()) : nullptr;
}

/// Call it before the search is made, which looks words up once.
void addPronunciations(ps_decoder_t* decoder, const std::vector<Sentence>& sentences) {
  for (const Sentence& sentence : sentences)
    for (const std::string& word : sentence) {
      char* const known = ps_lookup_word(decoder, word.c_str());
      const bool isKnown = known != nullptr;
      std::free(known);
      if (isKnown) continue;
      if (const std::string phones = audio::pronunciation(word); !phones.empty())
        ps_add_word(decoder, word.c_str(), phones.c_str(), FALSE);
    }
}

Model modelFrom(ps_decoder_t* decoder, const std::string& path, ngram_file_type_t type) {
  return Model(
      ngram_model_read(ps_get_config(decoder), path.c_str(), type, ps_get_logmath(decoder)));
}

/// The application's phrases and English at large, half and half.
Model mixedModel(ps_decoder_t* decoder, const Model& general,
                 const std::vector<Sentence>& sentences) {
  const MemoryFile arpa(arpaTrigram(sentences));
  const Model own = arpa.isComplete() ? modelFrom(decoder, arpa.path(), NGRAM_ARPA) : nullptr;
  if (!own) throw cannotRead("vocabulary");
  std::array<ngram_model_t*, 2> models{own.get(), general.get()};
  std::string ownName = "application";
  std::string generalName = "general";
  std::array<char*, 2> names{ownName.data(), generalName.data()};
  const std::array<float32, 2> weights{0.5F, 0.5F};
  // The set counts its own references to both.
  Model mixed(ngram_model_set_init(ps_get_config(decoder), models.data(), names.data(),
                                   weights.data(), models.size()));
  if (!mixed) throw cannotRead("vocabulary");
  return mixed;
}

/// A word that was said, not silence or noise.
bool isWord(std::string_view word) {
  return !word.empty() && word[0] != '<' && word[0] != '[' && word[0] != '+';
}

/// "read(2)" names the second way of saying "read".
std::string withoutVariant(std::string_view word) {
  return std::string(word.substr(0, word.find('(')));
}

/// The likeliest transcripts, which the library keeps without confidences.
std::vector<Sentence> alternativesOf(ps_decoder_t* decoder) {
  constexpr std::size_t kAlternatives = 10;
  std::vector<Sentence> all;
  for (ps_nbest_t* at = ps_nbest(decoder); at && (at = ps_nbest_next(at));) {
    int32 score = 0;
    const char* const text = ps_nbest_hyp(at, &score);
    Sentence& words = all.emplace_back();
    for (const std::string_view word : splitWords(text ? text : ""))
      if (isWord(word)) words.push_back(withoutVariant(word));
    if (all.size() < kAlternatives) continue;
    ps_nbest_free(at);
    break;
  }
  return all;
}

void addWord(SpeechResult& result, std::string word) {
  result.text += (result.text.empty() ? "" : " ") + word;
  result.segments.push_back({std::move(word), 0});
}

/// Restores the mean that the model came with; it drifts with what is heard.
void resetMean(ps_decoder_t* decoder) {
  std::vector<mfcc_t> mean(static_cast<std::size_t>(ps_get_feat(decoder)->cepsize));
  const char* const known = cmd_ln_str_r(ps_get_config(decoder), "-cmninit");
  const char* rest = known ? known : "";
  const char* const end = rest + std::string_view(rest).size();
  for (mfcc_t& value : mean) {
    if (rest == end) break;
    rest = std::from_chars(rest, end, value).ptr;
    if (rest != end) ++rest;  // A comma.
  }
  cmn_live_set(ps_get_feat(decoder)->cmn_struct, mean.data());
}

}  // namespace

void Decoder::Free::operator()(ps_decoder_s* decoder) const { ps_free(decoder); }

std::filesystem::path modelFolder(const std::filesystem::path& chosen) {
  if (!chosen.empty()) return chosen;
  const auto variable = [](const char* name) {
    const char* const value = std::getenv(name);
    return std::string(value ? value : "");
  };
  if (const std::string given = variable("ZELVORA_SPHINX_MODELS"); !given.empty()) return given;
  const std::string folders = variable("XDG_DATA_HOME") + ":" + variable("XDG_DATA_DIRS");
  for (const std::string_view folder : splitWords(folders, ':'))
    if (const auto models = std::filesystem::path(folder) / "pocketsphinx/model";
        folder.starts_with('/') && Decoder::isInstalled(models))
      return models;
  return ZELVORA_SPHINX_MODELS;
}

bool Decoder::isInstalled(const std::filesystem::path& models) {
  std::error_code ignored;
  return std::filesystem::exists(models / kAcousticModel, ignored) &&
         std::filesystem::exists(models / kLanguageModel, ignored) &&
         std::filesystem::exists(models / kDictionary, ignored);
}

Decoder::Decoder(const std::vector<std::string>& vocabulary, const std::filesystem::path& models) {
  const PlainNumbers plainNumbers;
  // The library ends the process over some files that are missing.
  if (isInstalled(models)) decoder_.reset(decoderWithoutSearch(models));
  if (!decoder_) throw cannotRead("acoustic model in " + models.string());
  ps_decoder_t* const decoder = decoder_.get();
  const std::vector<Sentence> sentences = audio::spokenSentences(vocabulary);
  addPronunciations(decoder, sentences);
  Model model = modelFrom(decoder, models / kLanguageModel, NGRAM_AUTO);
  if (!model) throw cannotRead("language model in " + models.string());
  if (!sentences.empty()) model = mixedModel(decoder, model, sentences);
  judge_ = audio::TranscriptJudge(
      vocabulary, [this](const std::string& word) { return phonesOf(word); }, audio::kSphinxWeights,
      audio::WholePhrases::alsoWhereNothingOpens);
  if (ps_set_lm(decoder, kSearch, model.get()) < 0 || ps_set_search(decoder, kSearch) < 0)
    throw cannotRead("language model");
}

void Decoder::begin(OpenedBy openedBy) {
  openedBy_ = std::move(openedBy);
  if (isRunning_) ps_end_utt(decoder_.get());
  resetMean(decoder_.get());
  ps_start_stream(decoder_.get());
  isRunning_ = ps_start_utt(decoder_.get()) == 0;
  if (!isRunning_) throw Error("ZelvoraSpeechRecognizer", 4, "The speech recogniser did not start");
}

void Decoder::hear(std::span<const std::int16_t> sound) {
  if (!isRunning_) return;
  ps_process_raw(decoder_.get(), sound.data(), sound.size(), FALSE, FALSE);
  // On its own the library adapts to the speaker only after some seconds, when a command is long
  // over.
  cmn_live_update(ps_get_feat(decoder_.get())->cmn_struct);
}

SpeechResult Decoder::partialResult() const {
  SpeechResult result;
  if (!isRunning_) return result;
  for (ps_seg_t* at = ps_seg_iter(decoder_.get()); at; at = ps_seg_next(at))
    if (isWord(ps_seg_word(at))) addWord(result, withoutVariant(ps_seg_word(at)));
  return result;
}

SpeechResult Decoder::end() { return judged(decoded()); }

audio::Decoded Decoder::decoded() {
  if (!isRunning_) return {};
  isRunning_ = false;
  ps_end_utt(decoder_.get());
  logmath_t* const logs = ps_get_logmath(decoder_.get());
  audio::Decoded decoded;
  for (ps_seg_t* at = ps_seg_iter(decoder_.get()); at; at = ps_seg_next(at)) {
    if (!isWord(ps_seg_word(at))) continue;
    const int32 certainty = ps_seg_prob(at, nullptr, nullptr, nullptr);
    // Rounded logarithms come out a little above 1.
    decoded.words.push_back(
        {withoutVariant(ps_seg_word(at)), std::min(1.0, logmath_exp(logs, certainty))});
  }
  decoded.alternatives = alternativesOf(decoder_.get());
  return decoded;
}

SpeechResult Decoder::judged(const audio::Decoded& decoded) const {
  return judge_.judge(
      decoded, [this](const std::string& word) { return phonesOf(word); }, openedBy_);
}

audio::Evidence Decoder::evidence(const audio::Decoded& decoded) const {
  return judge_.evidence(
      decoded, [this](const std::string& word) { return phonesOf(word); }, openedBy_);
}

std::string Decoder::phonesOf(const std::string& word) const {
  char* const known = ps_lookup_word(decoder_.get(), word.c_str());
  std::string phones = known ? known : "";
  std::free(known);
  return phones.empty() ? audio::pronunciation(word) : phones;
}

}  // namespace zelvora::sphinx
