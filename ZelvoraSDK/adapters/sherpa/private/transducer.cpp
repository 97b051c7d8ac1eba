#include <ZelvoraSDK/adapters/sherpa/private/transducer.h>

#include <c-api.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <boost/json/parse.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/audio/private/pronunciation.h>
#include <ZelvoraSDK/adapters/audio/private/resampler.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora::sherpa {
namespace {

namespace fs = std::filesystem;

/// A transducer for a phone has 5 to 300 MB.
constexpr std::uintmax_t kMaxModelBytes = std::uintmax_t{1} << 30;
/// A model that needs more to decode one second of silence is of no use on a phone.
constexpr std::chrono::seconds kMaxTrial{60};

Error badModel(const std::string& what) {
  return {"ZelvoraSpeechRecognizer", 5, "The speech model can't be used: " + what};
}

/// The one file in `folder` that begins with `name` and ends in ".onnx"; of two, the smaller one,
/// which is the quantised one.
fs::path networkIn(const fs::path& folder, const std::string& name) {
  fs::path found;
  std::error_code failed;
  for (const auto& entry : fs::directory_iterator(folder, failed)) {
    const std::string file = entry.path().filename().string();
    if (!file.starts_with(name) || !file.ends_with(".onnx")) continue;
    if (found.empty() || entry.file_size() < fs::file_size(found)) found = entry.path();
  }
  if (found.empty()) throw badModel(folder.string() + " has no " + name + "*.onnx");
  return found;
}

std::string contentOf(const fs::path& file) {
  std::error_code failed;
  const std::uintmax_t size = fs::file_size(file, failed);
  if (failed || size == 0) throw badModel(file.string() + " is missing or empty");
  if (size > kMaxModelBytes) throw badModel(file.string() + " has more than 1 GiB");
  std::ifstream bytes(file, std::ios::binary);
  std::string content(std::istreambuf_iterator<char>(bytes), {});
  if (content.size() != size) throw badModel(file.string() + " can't be read");
  return content;
}

/// The metadata's names are in the file as plain text.
std::string networkWith(const fs::path& folder, const std::string& name,
                        std::initializer_list<std::string_view> metadata) {
  const fs::path file = networkIn(folder, name);
  const std::string content = contentOf(file);
  for (const std::string_view key : metadata)
    if (content.find(key) == std::string::npos)
      throw badModel(file.string() + " is not of a streaming transducer: no " + std::string(key));
  return file.string();
}

std::string reasonOf(int status) {
  if (WIFEXITED(status))
    return "the trial failed with status " + std::to_string(WEXITSTATUS(status));
  return std::string("the trial ended with ") + strsignal(WTERMSIG(status));
}

/// Waits without a limit only for a process that was killed.
int waitFor(pid_t child) {
  const auto end = std::chrono::steady_clock::now() + kMaxTrial;
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > end) {
      kill(child, SIGKILL);
      waitpid(child, &status, 0);
      throw badModel("it decodes one second of silence in more than a minute");
    }
    std::this_thread::sleep_for(std::chrono::milliseconds{20});
  }
  return status;
}

pid_t startTrial(const std::string& program, std::string folder) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
  std::string name = program;
  const std::array<char*, 3> arguments{name.data(), folder.data(), nullptr};
  pid_t child = 0;
  const int failed =
      posix_spawn(&child, program.c_str(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failed != 0) throw badModel(program + ", which tries models, can't be started");
  return child;
}

/// Installed, or where it was built.
std::string trialProgram() {
  if (access(ZELVORA_SHERPA_CHECK_INSTALLED, X_OK) == 0) return ZELVORA_SHERPA_CHECK_INSTALLED;
  return ZELVORA_SHERPA_CHECK_BUILT;
}

}  // namespace

ModelFiles modelFilesIn(const fs::path& folder) {
  std::error_code failed;
  if (!fs::is_directory(folder, failed)) throw badModel(folder.string() + " is no folder");
  ModelFiles files{.encoder = networkWith(folder, "encoder", {"model_type", "decode_chunk_len"}),
                   .decoder = networkWith(folder, "decoder", {"context_size", "vocab_size"}),
                   .joiner = networkWith(folder, "joiner", {"joiner_dim"}),
                   .tokens = (folder / "tokens.txt").string(),
                   .bpeVocabulary = {}};
  if (contentOf(files.tokens).find("<blk> 0") == std::string::npos)
    throw badModel(files.tokens + " has no token <blk>");
  if (fs::exists(folder / "bpe.vocab", failed))
    files.bpeVocabulary = (folder / "bpe.vocab").string();
  return files;
}

void tryModel(const fs::path& folder) {
  const int status = waitFor(startTrial(trialProgram(), folder.string()));
  if (status != 0) throw badModel(reasonOf(status));
}

namespace {

constexpr int kRate = audio::kModelRate;
constexpr int kFeatures = 80;
/// The model looks ahead this far; as much silence brings the last word out.
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

/// A word whose tokens are still coming.
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
