// zelvora_voice_bench: how well and how fast the device's recogniser understands the commands of
// the example shop, with the shop's vocabulary and without.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/pocketsphinx/private/decoder.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/facade/spoken_phrases.h>
#include <ZelvoraSDK/spec/stored_spec.h>
#include <benchmarks/timing.h>
#include <benchmarks/voice/captures.h>
#include <benchmarks/voice/clips.h>
#include <benchmarks/voice/silent_log.h>

namespace zelvora::bench {
namespace {

constexpr double kBelievable = 0.65;
constexpr std::size_t kBuffer = 1024;

StoredSpec shop() {
  std::ifstream file(ZELVORA_SOURCE_DIR "/examples/shop/shop.json", std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(file), {});
  return StoredSpec::fromAnyJson(bytes);
}

double residentMegabytes() {
  std::ifstream file("/proc/self/statm");
  double total = 0;
  double resident = 0;
  file >> total >> resident;
  return resident * 4096 / 1e6;
}

/// The device's part of the text pipeline.
class Router {
 public:
  explicit Router(const StoredSpec& spec) : spec_(spec) {}

  /// The screen that `text` opens at once; empty when it opens none.
  [[nodiscard]] std::string screenOf(const std::string& text) const {
    const auto cleaned = cleanUtterance(text, spec_, kLocale);
    if (cleaned.normalized.empty()) return {};
    const auto answer = answerLocally(cleaned.normalized, spec_, kLocale, router_, {});
    const auto* execute = std::get_if<ZelvoraExecute>(&answer.result);
    return execute ? execute->screenId : "";
  }

 private:
  PreparedSpec spec_;
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

struct Tally {
  std::size_t clips = 0;
  std::size_t words = 0;
  std::size_t errors = 0;
  std::size_t exact = 0;
  std::size_t heard = 0;     ///< Anything at all.
  std::size_t believed = 0;  ///< With confidence enough.
  std::size_t right = 0;
  std::size_t wrong = 0;
  std::vector<double> finalMilliseconds;
  double audioSeconds = 0;
  double decodingSeconds = 0;
};

void listen(sphinx::Decoder& decoder, const Clip& clip, const Router& router, Tally& tally) {
  const double start = threadSeconds();
  decoder.begin();
  std::span<const std::int16_t> rest(clip.samples);
  for (; rest.size() > kBuffer; rest = rest.subspan(kBuffer)) {
    decoder.hear(rest.first(kBuffer));
    static_cast<void>(decoder.partialResult());
  }
  const auto endOfAudio = std::chrono::steady_clock::now();
  decoder.hear(rest);
  const SpeechResult result = decoder.end();
  const std::chrono::duration<double, std::milli> took =
      std::chrono::steady_clock::now() - endOfAudio;
  tally.finalMilliseconds.push_back(took.count());
  tally.decodingSeconds += threadSeconds() - start;
  tally.audioSeconds += static_cast<double>(clip.samples.size()) / 16000;

  std::vector<std::string> words;
  double confidence = 0;
  for (const auto& segment : result.segments) {
    words.push_back(segment.text);
    confidence += segment.confidence / static_cast<double>(result.segments.size());
  }
  ++tally.clips;
  tally.words += clip.words.size();
  tally.errors += wordErrors(clip.words, words);
  tally.exact += words == clip.words;
  tally.heard += !words.empty();
  tally.believed += !words.empty() && confidence >= kBelievable;
  const std::string screen = router.screenOf(result.text);
  if (screen.empty()) return;
  ++(screen == clip.screenId ? tally.right : tally.wrong);
}

double percent(std::size_t part, std::size_t whole) {
  return whole == 0 ? 0 : 100.0 * static_cast<double>(part) / static_cast<double>(whole);
}

void print(const char* model, const char* kind, const Tally& tally) {
  if (tally.clips == 0) {
    std::printf("%-6s %-13s not installed\n", model, kind);
    return;
  }
  std::printf("%-6s %-13s %4zu %6.1f %6.1f %6zu %8zu %6zu %6zu %8.1f %8.1f %6.3f\n", model, kind,
              tally.clips, percent(tally.errors, tally.words), percent(tally.exact, tally.clips),
              tally.heard, tally.believed, tally.right, tally.wrong,
              quantile(tally.finalMilliseconds, 0.5), quantile(tally.finalMilliseconds, 0.95),
              tally.decodingSeconds / tally.audioSeconds);
  std::fflush(stdout);
}

/// All that is heard, made once for both models.
struct Sounds {
  std::vector<Clip> commands;
  std::vector<Clip> paraphrases;
  std::vector<Clip> strange = strangeClips();
  std::vector<Clip> wordless = wordlessClips();
  std::vector<Clip> human = humanClips();
};

struct Measured {
  Tally commands;
  Tally strange;
};

Measured measure(const char* model, const std::vector<std::string>& vocabulary,
                 const Sounds& sounds, const Router& router) {
  const double before = residentMegabytes();
  const double start = threadSeconds();
  sphinx::Decoder decoder(vocabulary);
  const double loading = threadSeconds() - start;
  const auto tallyOf = [&](const char* kind, const std::vector<Clip>& clips) {
    Tally tally;
    for (const Clip& clip : clips) listen(decoder, clip, router, tally);
    print(model, kind, tally);
    return tally;
  };
  Measured measured{.commands = tallyOf("commands", sounds.commands)};
  tallyOf("paraphrases", sounds.paraphrases);
  measured.strange = tallyOf("out of domain", sounds.strange);
  tallyOf("wordless", sounds.wordless);
  tallyOf("human", sounds.human);
  std::printf("%-6s loaded in %.2f s of processor time; %.0f MB more resident at the end\n", model,
              loading, residentMegabytes() - before);
  return measured;
}

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
  std::printf("%-52s %7.2f %s %6.2f  %s\n", what, value, atLeast ? ">=" : "<=", limit,
              holds ? "holds" : "DOES NOT HOLD");
  return holds;
}

bool judge(const Measured& stock, const Measured& mixed) {
  const Tally& commands = mixed.commands;
  const double exact = percent(commands.exact, commands.clips);
  const double stockExact = percent(stock.commands.exact, stock.commands.clips);
  bool good = judge("exact commands, %", exact, 75, true);
  good &= judge("exact commands, % (twice the stock model's)", exact, 2 * stockExact, true);
  good &= judge("out of domain that opens a screen, %",
                percent(mixed.strange.wrong, mixed.strange.clips), 2, false);
  good &= judge("end of audio to final text, median ms", quantile(commands.finalMilliseconds, 0.5),
                100, false);
  good &= judge("real-time factor", commands.decodingSeconds / commands.audioSeconds, 0.25, false);
  return good;
}

}  // namespace
}  // namespace zelvora::bench

int main() {
  using namespace zelvora;
  const StoredSpec spec = bench::shop();
  const bench::Router router(spec);
  const auto vocabulary = recognitionVocabulary(spec, bench::kLocale);
  const auto screenOf = [&](const std::string& text) { return router.screenOf(text); };
  const bench::Sounds sounds{
      .commands = bench::commandClips(*resolveSpec(spec).value().runtimeSpec, screenOf),
      .paraphrases = bench::paraphraseClips(vocabulary, screenOf)};
  std::printf(
      "model  sound        clips  WER %% exact%%  heard believed  right  wrong  final ms  (p95)    "
      "RTF\n");
  const auto stock = bench::measure("stock", {}, sounds, router);
  const auto mixed = bench::measure("mixed", vocabulary, sounds, router);
  bench::printEndpointing(sounds.commands, vocabulary);
  std::printf("\n");
  return bench::judge(stock, mixed) ? 0 : 1;
}
