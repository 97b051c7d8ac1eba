// zelvora_voice_bench: how well and how fast spoken commands are understood, by people and by
// synthetic voices.
//   --people FILE.tsv --spec FILE   recordings of people, and the spec that they speak to
//   --model DIR                     a model for the second recogniser, where it was built
//   --limit N                       the first N clips of each kind only, for a quick look
//   --features FILE                 what the confidence is estimated from, for fit_confidence.py

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/audio/combined_recognizer.h>
#include <ZelvoraSDK/adapters/pocketsphinx/private/decoder.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/facade/spoken_phrases.h>
#include <ZelvoraSDK/spec/stored_spec.h>
#include <benchmarks/timing.h>
#include <benchmarks/voice/captures.h>
#include <benchmarks/voice/clips.h>
#include <benchmarks/voice/silent_log.h>
#include <benchmarks/voice/statistics.h>
#include <benchmarks/voice/threads.h>
#ifdef ZELVORA_HAS_SHERPA
#include <ZelvoraSDK/adapters/sherpa/private/transducer.h>
#endif

namespace zelvora::bench {
namespace {

namespace fs = std::filesystem;

/// The façade's minimum confidence, unless an application sets another.
constexpr double kBelievable = 0.65;
constexpr std::size_t kBuffer = 1024;

StoredSpec specIn(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(file), {});
  return StoredSpec::fromAnyJson(bytes);
}

/// A spec, its vocabulary, and the device's part of the text pipeline.
class Domain {
 public:
  explicit Domain(const fs::path& spec)
      : spec_(specIn(spec)), vocabulary_(recognitionVocabulary(spec_, kLocale)), prepared_(spec_) {}

  [[nodiscard]] const StoredSpec& spec() const { return spec_; }
  [[nodiscard]] const std::vector<std::string>& vocabulary() const { return vocabulary_; }

  /// The task that `text` opens at once; empty when it opens none.
  [[nodiscard]] std::string taskOf(const std::string& text) const {
    const auto cleaned = cleanUtterance(text, prepared_, kLocale);
    if (cleaned.normalized.empty()) return {};
    const auto answer = answerLocally(cleaned.normalized, prepared_, kLocale, router_, {});
    if (const auto* execute = std::get_if<ZelvoraExecute>(&answer.result))
      return execute->taskId.value_or("");
    const auto* present = std::get_if<ZelvoraPresent>(&answer.result);
    return present ? present->taskId.value_or("") : "";
  }

 private:
  StoredSpec spec_;
  std::vector<std::string> vocabulary_;
  PreparedSpec prepared_;
  ZelvoraLocalRouter router_{std::make_shared<SilentLog>()};
};

std::size_t wordErrors(const std::vector<std::string>& said, const std::vector<std::string>& got) {
  std::vector<std::size_t> row(got.size() + 1);
  for (std::size_t j = 0; j <= got.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= said.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i);
    for (std::size_t j = 1; j <= got.size(); ++j) {
      const std::size_t changed = diagonal + (said[i - 1] == got[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, changed});
    }
  }
  return row.back();
}

/// What one recogniser made of one clip.
struct Answer {
  SpeechResult result;
  double seconds = 0;            ///< Of processor time.
  double finalMilliseconds = 0;  ///< From the last sound to the result.
};

double confidenceOf(const SpeechResult& result) {
  double sum = 0;
  for (const auto& segment : result.segments) sum += segment.confidence;
  return result.segments.empty() ? 0 : sum / static_cast<double>(result.segments.size());
}

struct Tally {
  std::size_t clips = 0;
  std::size_t words = 0;
  std::size_t errors = 0;
  std::size_t exact = 0;
  std::size_t believed = 0;  ///< With confidence enough.
  std::size_t right = 0;     ///< Of those.
  std::size_t wrong = 0;     ///< Of those.
  std::vector<double> rightConfidences;
  std::vector<double> otherConfidences;
  std::vector<double> finalMilliseconds;
  double audioSeconds = 0;
  double decodingSeconds = 0;

  void add(const Clip& clip, const Answer& answer, const Domain& domain) {
    std::vector<std::string> got;
    for (const auto& segment : answer.result.segments) got.push_back(segment.text);
    const double confidence = confidenceOf(answer.result);
    const std::string task = domain.taskOf(answer.result.text);
    const bool isRight = !clip.taskId.empty() && task == clip.taskId;
    ++clips;
    words += clip.words.size();
    errors += wordErrors(clip.words, got);
    exact += got == clip.words;
    (isRight ? rightConfidences : otherConfidences).push_back(confidence);
    finalMilliseconds.push_back(answer.finalMilliseconds);
    audioSeconds += static_cast<double>(clip.samples.size()) / 16000;
    decodingSeconds += answer.seconds;
    if (got.empty() || confidence < kBelievable) return;
    ++believed;
    right += isRight;
    wrong += !isRight && !task.empty();
  }
};

void print(const std::string& recogniser, const std::string& sound, const Tally& tally) {
  std::printf("%-16s %-20s %4zu %6.1f %21s %21s %21s %21s %5.2f %6.1f %6.1f %6.3f\n",
              recogniser.c_str(), sound.c_str(), tally.clips,
              tally.words == 0
                  ? 0.0
                  : 100 * static_cast<double>(tally.errors) / static_cast<double>(tally.words),
              shareWithInterval(tally.exact, tally.clips).c_str(),
              shareWithInterval(tally.believed, tally.clips).c_str(),
              shareWithInterval(tally.right, tally.clips).c_str(),
              shareWithInterval(tally.wrong, tally.clips).c_str(),
              areaUnderCurve(tally.rightConfidences, tally.otherConfidences),
              quantile(tally.finalMilliseconds, 0.5), quantile(tally.finalMilliseconds, 0.95),
              tally.decodingSeconds / tally.audioSeconds);
  std::fflush(stdout);
}

/// An engine of either recogniser, with the two halves of its answer apart.
template <class Engine>
class Listener {
 public:
  Listener(std::string name, std::unique_ptr<Engine> engine)
      : name_(std::move(name)), engine_(std::move(engine)) {}

  [[nodiscard]] const std::string& name() const { return name_; }

  /// As it was decoded, and as the application is given it.
  std::pair<Answer, Answer> listen(const Clip& clip) {
    const double start = threadSeconds();
    engine_->begin();
    std::span<const std::int16_t> rest(clip.samples);
    for (; rest.size() > kBuffer; rest = rest.subspan(kBuffer)) {
      engine_->hear(rest.first(kBuffer));
      static_cast<void>(engine_->partialResult());
    }
    const double endOfAudio = threadSeconds();
    engine_->hear(rest);
    decoded_ = engine_->decoded();
    Answer plain{.result = {.segments = decoded_, .isFinal = true},
                 .seconds = threadSeconds() - start,
                 .finalMilliseconds = 1e3 * (threadSeconds() - endOfAudio)};
    for (const auto& word : decoded_)
      plain.result.text += (plain.result.text.empty() ? "" : " ") + word.text;
    Answer judged{.result = engine_->judged(decoded_),
                  .seconds = threadSeconds() - start,
                  .finalMilliseconds = 1e3 * (threadSeconds() - endOfAudio)};
    return {std::move(plain), std::move(judged)};
  }

  /// Of the last clip.
  [[nodiscard]] audio::Evidence evidence() const { return engine_->evidence(decoded_); }

 private:
  std::string name_;
  std::unique_ptr<Engine> engine_;
  std::vector<SpeechSegment> decoded_;
};

struct Options {
  std::optional<fs::path> people;
  std::optional<fs::path> spec;
  std::optional<fs::path> model;
  std::optional<fs::path> features;
  std::size_t limit = std::numeric_limits<std::size_t>::max();
};

/// A line a clip: recogniser, kind of sound, clip, whether its text opens the right task, evidence.
void write(std::ostream& out, const std::string& recogniser, const std::string& sound,
           std::size_t index, bool isRight, const audio::Evidence& evidence) {
  out << recogniser << '\t' << sound << '\t' << index << '\t' << isRight;
  for (const double value : evidence) out << '\t' << value;
  out << '\n';
}

/// By recogniser, for one kind of sound.
using Tallies = std::map<std::string, Tally>;

/// One domain's recognisers, loaded.
class Ear {
 public:
  Ear(const Domain& domain, const Options& options) : domain_(domain), limit_(options.limit) {
    const double start = threadSeconds();
    sphinx_.emplace("pocketsphinx", std::make_unique<sphinx::Decoder>(domain.vocabulary()));
    std::printf("loaded in %.2f s of processor time, %zu phrases\n", threadSeconds() - start,
                domain.vocabulary().size());
#ifdef ZELVORA_HAS_SHERPA
    if (options.model)
      transducer_.emplace(
          "sherpa", std::make_unique<sherpa::Transducer>(SherpaModel{.folder = *options.model},
                                                         domain.vocabulary()));
#endif
    if (options.features) features_.open(*options.features, std::ios::app);
  }

  Tallies hear(const ClipSet& set) {
    Tallies tallies;
    const std::size_t count = std::min(limit_, set.clips.size());
    for (std::size_t i = 0; i < count; ++i) hear(set.clips[i], i, set.name, tallies);
    for (const auto& [name, tally] : tallies) print(name, set.name, tally);
    return tallies;
  }

 private:
  template <class Engine>
  Answer hearWith(Listener<Engine>& listener, const Clip& clip, std::size_t index,
                  const std::string& sound, Tallies& tallies) {
    auto [plain, judged] = listener.listen(clip);
    tallies[listener.name() + ", plain"].add(clip, plain, domain_);
    tallies[listener.name()].add(clip, judged, domain_);
    if (features_.is_open() && !judged.result.segments.empty())
      write(features_, listener.name(), sound, index,
            !clip.taskId.empty() && domain_.taskOf(judged.result.text) == clip.taskId,
            listener.evidence());
    return judged;
  }

  void hear(const Clip& clip, std::size_t index, const std::string& sound, Tallies& tallies) {
    const Answer first = hearWith(*sphinx_, clip, index, sound, tallies);
#ifdef ZELVORA_HAS_SHERPA
    if (!transducer_) return;
    const Answer second = hearWith(*transducer_, clip, index, sound, tallies);
    tallies["together"].add(
        clip,
        {.result = combined({first.result, domain_.taskOf(first.result.text)},
                            {second.result, domain_.taskOf(second.result.text)}),
         .seconds = first.seconds + second.seconds,
         .finalMilliseconds = std::max(first.finalMilliseconds, second.finalMilliseconds)},
        domain_);
#else
    static_cast<void>(first);
#endif
  }

  const Domain& domain_;
  std::size_t limit_;
  std::optional<Listener<sphinx::Decoder>> sphinx_;
#ifdef ZELVORA_HAS_SHERPA
  std::optional<Listener<sherpa::Transducer>> transducer_;
#endif
  std::ofstream features_;
};

void printEndpointing(const std::vector<Clip>& commands,
                      const std::vector<std::string>& vocabulary) {
  constexpr std::size_t kCaptures = 12;
  const std::vector<Clip> first(
      commands.begin(),
      commands.begin() + static_cast<std::ptrdiff_t>(std::min(kCaptures, commands.size())));
  const std::vector<double> delays = endpointingDelays(first, vocabulary);
  std::printf(
      "end of voice to end of capture, %zu commands in real time: median %.2f s, p95 %.2f s\n",
      delays.size(), quantile(delays, 0.5), quantile(delays, 0.95));
}

bool judge(const char* what, double value, double limit, bool atLeast) {
  const bool holds = atLeast ? value >= limit : value <= limit;
  std::printf("%-60s %7.2f %s %6.2f  %s\n", what, value, atLeast ? ">=" : "<=", limit,
              holds ? "holds" : "DOES NOT HOLD");
  return holds;
}

double percent(std::size_t part, std::size_t whole) {
  return whole == 0 ? 0 : 100.0 * static_cast<double>(part) / static_cast<double>(whole);
}

/// By kind of sound.
using Measured = std::map<std::string, Tallies>;

bool judge(const Measured& measured) {
  constexpr const char* kDefault = "pocketsphinx";
  const auto tally = [&](const char* sound) { return measured.at(sound).at(kDefault); };
  bool good = true;
  if (measured.contains("people")) {
    const Tally people = tally("people");
    good &= judge("people: right screen, %", percent(people.right, people.clips), 88, true);
    good &= judge("people: wrong screen, %", percent(people.wrong, people.clips), 2, false);
    good &= judge("people: right of what is believed, %", percent(people.right, people.believed),
                  80, true);
  }
  const Tally flite = tally("commands, flite");
  const Tally espeak = tally("commands, espeak");
  good &= judge("flite commands: exact, %", percent(flite.exact, flite.clips), 90, true);
  good &= judge("flite commands: right screen, %", percent(flite.right, flite.clips), 95, true);
  good &= judge("espeak commands: right screen, %", percent(espeak.right, espeak.clips), 60, true);
  good &= judge("out of domain: screens that open, of 100",
                static_cast<double>(tally("out of domain, flite").wrong +
                                    tally("out of domain, espeak").wrong),
                1, false);
  good &= judge("wordless: text that is believed", static_cast<double>(tally("wordless").believed),
                0, false);
  good &= judge("last sound to final text, median ms", quantile(flite.finalMilliseconds, 0.5), 30,
                false);
  good &=
      judge("last sound to final text, p95 ms", quantile(flite.finalMilliseconds, 0.95), 60, false);
  good &= judge("real-time factor", flite.decodingSeconds / flite.audioSeconds, 0.15, false);
  return good;
}

bool run(const Options& options) {
  std::printf(
      "recogniser       sound               clips  WER %%   exact %% [95 %%]       believed %% [95 "
      "%%]"
      "    right %% [95 %%]       wrong %% [95 %%]        AUC  final  (p95)    RTF\n");
  Measured measured;
  if (options.people && options.spec) {
    const Domain domain(*options.spec);
    measured["people"] = Ear(domain, options).hear(peopleClips(*options.people));
  } else {
    std::printf("people: none here; --people FILE.tsv --spec FILE or ZELVORA_PEOPLE names some\n");
  }
  const Domain shop(ZELVORA_SOURCE_DIR "/examples/shop/shop.json");
  Ear ear(shop, options);
  std::vector<ClipSet> sets = commandClips(*shop.spec().resolve().runtimeSpec);
  for (auto more : {paraphraseClips(shop.vocabulary()), strangeClips()})
    sets.insert(sets.end(), more.begin(), more.end());
  sets.push_back(wordlessClips());
  for (const ClipSet& set : sets) measured[set.name] = ear.hear(set);
  printEndpointing(sets.front().clips, shop.vocabulary());
  std::printf("\n");
  return judge(measured);
}

/// The spec beside a table of recordings: the one JSON file there.
std::optional<fs::path> specBeside(const fs::path& table) {
  for (const auto& entry : fs::directory_iterator(table.parent_path()))
    if (entry.path().extension() == ".json") return entry.path();
  return std::nullopt;
}

Options optionsFrom(int count, char** arguments) {
  Options options;
  for (int i = 1; i + 1 < count; i += 2) {
    const std::string_view name = arguments[i];
    if (name == "--people") options.people = arguments[i + 1];
    if (name == "--spec") options.spec = arguments[i + 1];
    if (name == "--model") options.model = arguments[i + 1];
    if (name == "--features") options.features = arguments[i + 1];
    if (name == "--limit") options.limit = std::strtoul(arguments[i + 1], nullptr, 10);
  }
  const char* const people = std::getenv("ZELVORA_PEOPLE");
  if (!options.people && people && *people) options.people = people;
  if (options.people && !options.spec) options.spec = specBeside(*options.people);
  const char* const model = std::getenv("ZELVORA_MODEL");
  if (!options.model && model && *model) options.model = model;
  return options;
}

}  // namespace
}  // namespace zelvora::bench

int main(int count, char** arguments) {
  const bool isClean = zelvora::bench::measureThreads();
  const bool isGood = zelvora::bench::run(zelvora::bench::optionsFrom(count, arguments));
  return isClean && isGood ? 0 : 1;
}
