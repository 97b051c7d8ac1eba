// zelvora_voice_bench: how well and how fast spoken commands are understood, by people and by
// synthetic voices.
//   --people FILE.tsv --spec FILE   recordings of people, and the spec that they speak to
//   --model DIR                     a model for the second recogniser, where it was built
//   --limit N                       the first N clips of each kind only, for a quick look
//   --features FILE                 what the confidence is estimated from, for fit_confidence.py
//   --threads N                     how many clips are decoded at a time; one per core

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <benchmarks/timing.h>
#include <benchmarks/voice/captures.h>
#include <benchmarks/voice/clips.h>
#include <benchmarks/voice/domain.h>
#include <benchmarks/voice/ears.h>
#include <benchmarks/voice/tally.h>
#include <benchmarks/voice/threads.h>

namespace zelvora::bench {
namespace {

namespace fs = std::filesystem;

struct Options {
  std::optional<fs::path> people;
  std::optional<fs::path> spec;
  EarOptions ears;
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
  Tally heard = flite;
  heard.add(espeak);
  if (measured.contains("people")) heard.add(tally("people"));
  good &= judge("last sound to final text, median ms", quantile(heard.finalMilliseconds, 0.5), 30,
                false);
  good &=
      judge("last sound to final text, p95 ms", quantile(heard.finalMilliseconds, 0.95), 60, false);
  good &= judge("real-time factor", heard.decodingSeconds / heard.audioSeconds, 0.15, false);
  return good;
}

/// The columns of the summary.
std::vector<std::string> recognisersOf(const Measured& measured) {
  std::vector<std::string> names;
  for (const auto& [name, tally] : measured.begin()->second) names.push_back(name);
  return names;
}

bool run(const Options& options) {
  printHeading();
  Measured measured;
  const auto hear = [&](Ears& ears, const ClipSet& set) {
    measured[set.name] = ears.hear(set);
    print(set.name, measured[set.name]);
  };
  if (options.people && options.spec) {
    const Domain domain(*options.spec);
    Ears ears(domain, options.ears);
    hear(ears, peopleClips(*options.people));
  } else {
    std::printf("people: none here; --people FILE.tsv --spec FILE or ZELVORA_PEOPLE names some\n");
  }
  const Domain shop(ZELVORA_SOURCE_DIR "/examples/shop/shop.json");
  Ears ears(shop, options.ears);
  const std::vector<ClipSet> commands = commandClips(*shop.spec().resolve().runtimeSpec);
  for (const ClipSet& set : commands) hear(ears, set);
  for (const ClipSet& set : paraphraseClips(shop.vocabulary())) hear(ears, set);
  for (const ClipSet& set : strangeClips()) hear(ears, set);
  hear(ears, wordlessClips());
  printEndpointing(commands.front().clips, shop.vocabulary());
  std::printf("\n");
  printSummary(measured, recognisersOf(measured));
  std::printf("\n");
  return judge(measured);
}

/// The spec beside a table of recordings: the one JSON file there.
std::optional<fs::path> specBeside(const fs::path& table) {
  for (const auto& entry : fs::directory_iterator(table.parent_path()))
    if (entry.path().extension() == ".json") return entry.path();
  return std::nullopt;
}

std::size_t numberOf(const std::string& option, std::string_view value) {
  std::size_t number = 0;
  const auto [end, failed] = std::from_chars(value.data(), value.data() + value.size(), number);
  if (failed != std::errc{} || end != value.data() + value.size() || number == 0)
    throw std::invalid_argument(option + " takes a number from 1 on");
  return number;
}

void take(Options& options, const std::string& name, const char* value) {
  if (name == "--people")
    options.people = value;
  else if (name == "--spec")
    options.spec = value;
  else if (name == "--model")
    options.ears.model = value;
  else if (name == "--features")
    options.ears.features = value;
  else if (name == "--limit")
    options.ears.limit = numberOf(name, value);
  else if (name == "--threads")
    options.ears.threads = static_cast<unsigned>(numberOf(name, value));
  else
    throw std::invalid_argument("unknown option " + name);
}

std::optional<fs::path> environment(const char* name) {
  const char* const value = std::getenv(name);
  return value && *value ? std::optional<fs::path>(value) : std::nullopt;
}

Options optionsFrom(int count, char** arguments) {
  Options options;
  options.ears.threads = std::max(1U, std::thread::hardware_concurrency());
  for (int i = 1; i < count; i += 2) {
    if (i + 1 == count) throw std::invalid_argument(arguments[i] + std::string(" takes a value"));
    take(options, arguments[i], arguments[i + 1]);
  }
  if (!options.people) options.people = environment("ZELVORA_PEOPLE");
  if (options.people && !options.spec) options.spec = specBeside(*options.people);
  if (!options.ears.model) options.ears.model = environment("ZELVORA_MODEL");
  return options;
}

}  // namespace
}  // namespace zelvora::bench

int main(int count, char** arguments) {
  try {
    const bool isClean = zelvora::bench::measureThreads();
    const bool isGood = zelvora::bench::run(zelvora::bench::optionsFrom(count, arguments));
    return isClean && isGood ? 0 : 1;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "zelvora_voice_bench: %s\n", failure.what());
    return 2;
  }
}
