#include <ZelvoraSDK/adapters/sherpa/private/transducer.h>

#include <c-api.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include <ZelvoraSDK/adapters/audio/private/pronunciation.h>
#include <ZelvoraSDK/adapters/audio/private/resampler.h>
#include <ZelvoraSDK/adapters/audio/private/vocabulary.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>
#include <boost/json/parse.hpp>

namespace zelvora::sherpa {
namespace {

constexpr int kRate = audio::kModelRate;
constexpr int kFeatures = 80;
/// The model looks ahead this far; as much silence lets the last word out.
constexpr std::size_t kLookAhead = kRate / 2;
constexpr int kPaths = 4;

const SherpaOnnxOnlineRecognizer* load(const ModelFiles& files, const std::string& hotwords,
                                       float hotwordsScore) {
  SherpaOnnxOnlineRecognizerConfig config{};
  config.feat_config = {.sample_rate = kRate, .feature_dim = kFeatures};
  config.model_config.transducer = {.encoder = files.encoder.c_str(),
                                    .decoder = files.decoder.c_str(),
                                    .joiner = files.joiner.c_str()};
  config.model_config.tokens = files.tokens.c_str();
  config.model_config.num_threads = 1;
  config.model_config.provider = "cpu";
  config.decoding_method = "modified_beam_search";
  config.max_active_paths = kPaths;
  if (!hotwords.empty() && hotwordsScore > 0 && !files.bpeVocabulary.empty()) {
    config.model_config.modeling_unit = "bpe";
    config.model_config.bpe_vocab = files.bpeVocabulary.c_str();
    config.hotwords_buf = hotwords.c_str();
    config.hotwords_buf_size = static_cast<std::int32_t>(hotwords.size());
    config.hotwords_score = hotwordsScore;
  }
  return SherpaOnnxCreateOnlineRecognizer(&config);
}

std::string pronounced(const std::string& word) { return audio::pronunciation(word); }

/// One word while its tokens come.
struct Growing {
  std::string text;
  double logProbability = 0;
  double tokens = 0;
};

void addTo(std::vector<SpeechSegment>& words, const Growing& word) {
  std::string_view text = trimmed(word.text);
  while (text.starts_with('\'')) text.remove_prefix(1);
  if (text.empty()) return;
  words.push_back({lowercased(text), std::min(1.0, std::exp(word.logProbability / word.tokens))});
}

}  // namespace

std::vector<SpeechSegment> wordsOf(std::string_view json) {
  boost::system::error_code failed;
  const auto parsed = boost::json::parse(json, failed);
  std::vector<SpeechSegment> words;
  const auto* result = failed ? nullptr : parsed.if_object();
  const auto* tokens =
      result && result->if_contains("tokens") ? result->at("tokens").if_array() : nullptr;
  const auto* logs =
      result && result->if_contains("ys_probs") ? result->at("ys_probs").if_array() : nullptr;
  if (!tokens || !logs || tokens->size() != logs->size()) return words;
  Growing word;
  for (std::size_t i = 0; i < tokens->size(); ++i) {
    const auto* token = (*tokens)[i].if_string();
    if (!token) continue;
    if (std::string_view(*token).starts_with(' ')) {
      if (word.tokens > 0) addTo(words, word);
      word = {};
    }
    word.text += std::string_view(*token);
    word.logProbability += (*logs)[i].is_number() ? (*logs)[i].to_number<double>() : 0;
    ++word.tokens;
  }
  if (word.tokens > 0) addTo(words, word);
  return words;
}

std::string hotwordsOf(const std::vector<std::string>& phrases) {
  std::string lines;
  for (const audio::Sentence& sentence : audio::spokenSentences(phrases)) {
    for (std::size_t i = 0; i < sentence.size(); ++i) lines += (i == 0 ? "" : " ") + sentence[i];
    lines += '\n';
  }
  std::ranges::transform(lines, lines.begin(), [](char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
  });
  return lines;
}

void Transducer::Free::operator()(const SherpaOnnxOnlineRecognizer* recognizer) const {
  SherpaOnnxDestroyOnlineRecognizer(recognizer);
}

void Transducer::Free::operator()(const SherpaOnnxOnlineStream* stream) const {
  SherpaOnnxDestroyOnlineStream(stream);
}

Transducer::Transducer(const SherpaModel& model, const std::vector<std::string>& vocabulary) {
  const ModelFiles files = modelFilesIn(model.folder);
  tryModel(model.folder);
  recognizer_.reset(load(files, hotwordsOf(vocabulary), model.hotwordsScore));
  if (!recognizer_)
    throw Error("ZelvoraSpeechRecognizer", 5,
                "The speech model can't be used: " + model.folder.string() + " was refused");
  judge_ = audio::TranscriptJudge(vocabulary, &pronounced, audio::kTransducerWeights);
}

void Transducer::begin(OpenedBy openedBy) {
  openedBy_ = std::move(openedBy);
  stream_.reset(SherpaOnnxCreateOnlineStream(recognizer_.get()));
}

void Transducer::hear(std::span<const std::int16_t> sound) {
  std::vector<float> samples;
  samples.reserve(sound.size());
  for (const std::int16_t sample : sound) samples.push_back(static_cast<float>(sample) / 32768);
  accept(samples);
}

void Transducer::accept(std::span<const float> sound) {
  if (!stream_ || sound.empty()) return;
  SherpaOnnxOnlineStreamAcceptWaveform(stream_.get(), kRate, sound.data(),
                                       static_cast<std::int32_t>(sound.size()));
  while (SherpaOnnxIsOnlineStreamReady(recognizer_.get(), stream_.get()) != 0)
    SherpaOnnxDecodeOnlineStream(recognizer_.get(), stream_.get());
}

std::vector<SpeechSegment> Transducer::words() const {
  const char* const json = SherpaOnnxGetOnlineStreamResultAsJson(recognizer_.get(), stream_.get());
  std::vector<SpeechSegment> found = wordsOf(json ? json : "");
  SherpaOnnxDestroyOnlineStreamResultJson(json);
  return found;
}

SpeechResult Transducer::partialResult() const {
  SpeechResult result;
  if (!stream_) return result;
  for (SpeechSegment& word : words()) {
    result.text += (result.text.empty() ? "" : " ") + word.text;
    result.segments.push_back({std::move(word.text), 0});
  }
  return result;
}

audio::Decoded Transducer::decoded() {
  if (!stream_) return {};
  accept(std::vector<float>(kLookAhead));
  audio::Decoded found{.words = words(), .alternatives = {}};
  stream_.reset();
  return found;
}

SpeechResult Transducer::judged(const audio::Decoded& decoded) const {
  return judge_.judge(decoded, &pronounced, openedBy_);
}

audio::Evidence Transducer::evidence(const audio::Decoded& decoded) const {
  return judge_.evidence(decoded, &pronounced, openedBy_);
}

SpeechResult Transducer::end() { return judged(decoded()); }

bool decodesSilence(const ModelFiles& files) {
  const auto* const recognizer = load(files, {}, 0);
  if (!recognizer) return false;
  const auto* const stream = SherpaOnnxCreateOnlineStream(recognizer);
  const std::vector<float> silence(kRate);
  SherpaOnnxOnlineStreamAcceptWaveform(stream, kRate, silence.data(), kRate);
  while (SherpaOnnxIsOnlineStreamReady(recognizer, stream) != 0)
    SherpaOnnxDecodeOnlineStream(recognizer, stream);
  SherpaOnnxDestroyOnlineStream(stream);
  SherpaOnnxDestroyOnlineRecognizer(recognizer);
  return true;
}

}  // namespace zelvora::sherpa
