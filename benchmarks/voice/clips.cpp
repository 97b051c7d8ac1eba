#include <benchmarks/voice/clips.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>
#include <numbers>
#include <random>
#include <sstream>

#include <ZelvoraSDK/adapters/audio/private/vocabulary.h>
#include <tests/support/synthetic_voice.h>

namespace zelvora::bench {
namespace {

using testing::spoken;
using testing::Voice;

constexpr std::size_t kCommands = 30;
constexpr std::array kVoices{Voice::slt, Voice::rms, Voice::kal16};
constexpr std::size_t kTwoSeconds = 32000;
constexpr const char* kRecordings = "/usr/share/pocketsphinx/test/data/";

constexpr const char* kStrangeSentences[] = {"the train leaves at half past seven",
                                             "my grandmother was born in a small village",
                                             "the river is very cold in winter",
                                             "who won the football match last night",
                                             "the doctor told me to drink more water",
                                             "we are flying over the mountains now",
                                             "the teacher read a story to the children",
                                             "how tall is the highest tower in the world",
                                             "it will probably rain on tuesday",
                                             "the old piano is out of tune",
                                             "she planted tomatoes behind the barn",
                                             "our neighbours are very noisy",
                                             "the captain looked at the stars",
                                             "play some quiet jazz music",
                                             "how many planets are there",
                                             "the dog barked all through the night",
                                             "he forgot his umbrella on the bus",
                                             "turn the oven down a little",
                                             "the museum is closed for repairs",
                                             "I dreamt about an elephant"};

std::vector<std::string> wordsOf(const std::string& text) {
  const auto sentences = audio::spokenSentences({text});
  return sentences.empty() ? std::vector<std::string>{} : sentences.front();
}

void addVoices(std::vector<Clip>& clips, const std::string& text, const std::string& screenId) {
  for (const Voice voice : kVoices) clips.push_back({wordsOf(text), screenId, spoken(text, voice)});
}

template <class Wave>
Clip wordless(Wave wave) {
  Clip clip;
  for (std::size_t i = 0; i < kTwoSeconds; ++i)
    clip.samples.push_back(static_cast<std::int16_t>(wave(i)));
  return clip;
}

/// Of a plain wave file of 16-bit samples at 16 kHz; empty when it is none.
std::vector<std::int16_t> waveSamples(const std::string& path) {
  constexpr std::size_t kHeader = 44;
  std::ifstream file(path, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(file), {});
  std::uint32_t rate = 0;
  if (bytes.size() > kHeader) std::memcpy(&rate, bytes.data() + 24, sizeof rate);
  if (rate != 16000) return {};
  std::vector<std::int16_t> samples((bytes.size() - kHeader) / 2);
  std::memcpy(samples.data(), bytes.data() + kHeader, samples.size() * 2);
  return samples;
}

/// Lines of the form "<s> words </s> (file)".
void addRecordings(std::vector<Clip>& clips, const std::string& folder, const char* transcripts) {
  std::ifstream lines(folder + transcripts);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t first = line.find("<s>");
    const std::size_t last = line.find("</s>");
    const std::size_t name = line.find('(');
    if (first != 0 || last == std::string::npos || name == std::string::npos) continue;
    const std::string file = line.substr(name + 1, line.find(')') - name - 1);
    auto samples = waveSamples(folder + file + ".wav");
    if (!samples.empty())
      clips.push_back({wordsOf(line.substr(3, last - 3)), "", std::move(samples)});
  }
}

}  // namespace

std::vector<Clip> commandClips(const RuntimeSpec& spec,
                               const std::function<std::string(const std::string&)>& screenOf) {
  std::vector<Clip> clips;
  for (const RuntimeSpec::Task& task : spec.tasksRaw) {
    if (clips.size() == kCommands * kVoices.size()) break;
    const auto* examples = task.examplesByLocale.find(kLocale);
    if (examples && !examples->empty())
      addVoices(clips, examples->front(), screenOf(examples->front()));
  }
  return clips;
}

std::vector<Clip> paraphraseClips(const std::vector<std::string>& vocabulary,
                                  const std::function<std::string(const std::string&)>& screenOf) {
  const std::vector<audio::Sentence> known = audio::spokenSentences(vocabulary);
  std::vector<Clip> clips;
  std::ifstream lines(ZELVORA_SOURCE_DIR "/examples/shop/utterances.tsv");
  for (std::string line; clips.size() < kCommands * kVoices.size() && std::getline(lines, line);) {
    std::istringstream fields(line);
    std::string text;
    std::string expected;
    std::string locale;
    std::getline(fields, text, '\t');
    std::getline(fields, expected, '\t');
    std::getline(fields, locale, '\t');
    const bool isTask = !line.starts_with("# ") && expected != "-" && !expected.starts_with('?');
    if (!isTask || locale != kLocale || std::ranges::count(known, wordsOf(text))) continue;
    // A presentation has no screen.
    if (const std::string screen = screenOf(text); !screen.empty()) addVoices(clips, text, screen);
  }
  return clips;
}

std::vector<Clip> strangeClips() {
  std::vector<Clip> clips;
  for (const char* sentence : kStrangeSentences) addVoices(clips, sentence, "");
  return clips;
}

std::vector<Clip> wordlessClips() {
  std::vector<Clip> clips{wordless([](std::size_t) { return 0; })};
  for (const double strength : {50.0, 200.0, 600.0, 2000.0, 6000.0}) {
    std::mt19937 generator(3);
    std::normal_distribution<double> value(0, strength);
    clips.push_back(wordless([&](std::size_t) { return std::clamp(value(generator), -3e4, 3e4); }));
  }
  clips.push_back(wordless([](std::size_t i) {
    return 8000 * std::sin(2 * std::numbers::pi * 440 * static_cast<double>(i) / 16000);
  }));
  clips.push_back(wordless([](std::size_t i) { return i % 8000 < 20 ? 20000 : 0; }));
  return clips;
}

std::vector<Clip> humanClips() {
  std::vector<Clip> clips;
  addRecordings(clips, std::string(kRecordings) + "librivox/", "transcription");
  addRecordings(clips, std::string(kRecordings) + "cards/", "cards.transcription");
  return clips;
}

}  // namespace zelvora::bench
