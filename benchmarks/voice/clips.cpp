#include <benchmarks/voice/clips.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <numbers>
#include <random>
#include <set>
#include <sstream>

#include <ZelvoraSDK/adapters/audio/private/pronunciation.h>
#include <ZelvoraSDK/adapters/audio/private/resampler.h>
#include <ZelvoraSDK/adapters/sndfile/sound_files.h>
#include <tests/support/subprocess.h>
#include <tests/support/synthetic_voice.h>
#include <tests/support/temporary_folder.h>

namespace zelvora::bench {
namespace {

using testing::spoken;
using testing::Voice;

constexpr std::size_t kSentences = 30;
constexpr std::array kFliteVoices{Voice::slt, Voice::rms, Voice::kal16};
constexpr std::array kEspeakVoices{"en-us", "en-gb"};
constexpr std::size_t kTwoSeconds = 32000;
constexpr std::size_t kPause = 4000;

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

constexpr const char* kNewStrangeSentences[] = {"my neighbour repairs old bicycles",
                                                "the soup needs a little more salt",
                                                "we walked along the beach until sunset",
                                                "is there life on other planets",
                                                "the bridge was built a hundred years ago",
                                                "her brother plays the violin very well",
                                                "turn left at the next traffic light",
                                                "I have a headache since this morning",
                                                "the cat is sleeping on the roof",
                                                "how do you spell rhinoceros",
                                                "the lecture was long and boring",
                                                "they moved to the countryside last spring",
                                                "what time does the sun rise tomorrow",
                                                "he paints his fence every summer",
                                                "our train was two hours late",
                                                "the children are building a sandcastle",
                                                "set an alarm for six in the morning",
                                                "the volcano erupted without any warning",
                                                "she speaks five languages fluently",
                                                "please close the window it is cold",
                                                "the farmer sold all of his sheep",
                                                "how far away is the moon",
                                                "my tooth hurts when I drink cold water",
                                                "the orchestra played until midnight",
                                                "who wrote that famous poem",
                                                "the kettle is boiling over",
                                                "a strong wind blew the tent away",
                                                "they are digging a tunnel under the river",
                                                "can penguins fly",
                                                "the photograph hangs above the fireplace",
                                                "he was late because of the snow",
                                                "sing me a song about the sea",
                                                "the library has ten thousand books",
                                                "my uncle is a retired dentist",
                                                "the recipe calls for three eggs",
                                                "what is the capital of portugal",
                                                "the ice on the lake is very thin",
                                                "they danced all night at the wedding",
                                                "dim the lights in the kitchen",
                                                "the parrot repeats every word"};

std::vector<std::string> fieldsOf(const std::string& line) {
  std::vector<std::string> fields;
  std::istringstream in(line);
  for (std::string field; std::getline(in, field, '\t');) fields.push_back(field);
  return fields;
}

/// One channel at the decoders' rate.
std::vector<std::int16_t> soundOf(const std::filesystem::path& file) {
  SoundReader reader(file);
  audio::Resampler resampler(static_cast<std::uint32_t>(std::lrint(reader.format().sampleRate)));
  std::vector<std::int16_t> sound;
  std::vector<float> samples(1024 * reader.format().channels);
  for (std::size_t taken = samples.size(); taken == samples.size();) {
    taken = reader.read(samples);
    const auto mono = audio::monoSound({.format = reader.format(),
                                        .frames = taken / reader.format().channels,
                                        .samples = std::span<const float>(samples).first(taken)});
    const auto part = resampler.take(mono.samples);
    sound.insert(sound.end(), part.begin(), part.end());
  }
  const auto rest = resampler.drain();
  sound.insert(sound.end(), rest.begin(), rest.end());
  return sound;
}

/// Read aloud by eSpeak NG, with the silence around it that the other voices have.
std::vector<std::int16_t> spokenByEspeak(const std::string& text, const std::string& voice) {
  const testing::TemporaryFolder folder;
  const auto file = folder.path() / "spoken.wav";
  std::ofstream(folder.path() / "text") << text;
  testing::outputOf("espeak-ng -v " + voice + " -w " + file.string() + " -f " +
                    (folder.path() / "text").string());
  std::vector<std::int16_t> samples(kPause);
  const auto sound = soundOf(file);
  samples.insert(samples.end(), sound.begin(), sound.end());
  samples.resize(samples.size() + kPause);
  return samples;
}

std::vector<std::string> wordsOf(const std::string& text) {
  const auto sentences = audio::spokenSentences({text});
  return sentences.empty() ? std::vector<std::string>{} : sentences.front();
}

/// A sentence and the task that it should open.
struct Sentence {
  std::string text;
  std::string taskId;
};

std::vector<ClipSet> inEveryVoice(const std::string& name, const std::vector<Sentence>& sentences) {
  ClipSet flite{.name = name + ", flite", .clips = {}};
  ClipSet espeak{.name = name + ", espeak", .clips = {}};
  for (const auto& [text, taskId] : sentences) {
    for (const Voice voice : kFliteVoices)
      flite.clips.push_back({wordsOf(text), taskId, spoken(text, voice)});
    for (const char* const voice : kEspeakVoices)
      espeak.clips.push_back({wordsOf(text), taskId, spokenByEspeak(text, voice)});
  }
  return {std::move(flite), std::move(espeak)};
}

template <class Wave>
Clip wordless(Wave wave) {
  Clip clip;
  for (std::size_t i = 0; i < kTwoSeconds; ++i)
    clip.samples.push_back(
        static_cast<std::int16_t>(std::clamp<double>(wave(static_cast<double>(i)), -3e4, 3e4)));
  return clip;
}

double sine(double hertz, double at) { return std::sin(2 * std::numbers::pi * hertz * at / 16000); }

}  // namespace

std::vector<ClipSet> commandClips(const RuntimeSpec& spec) {
  std::vector<Sentence> sentences;
  for (const RuntimeSpec::Task& task : spec.tasksRaw) {
    if (sentences.size() == kSentences) break;
    const auto* examples = task.examplesByLocale.find(kLocale);
    if (examples && !examples->empty()) sentences.push_back({examples->front(), task.id});
  }
  return inEveryVoice("commands", sentences);
}

std::vector<ClipSet> paraphraseClips(const std::vector<std::string>& vocabulary) {
  const auto phrases = audio::spokenSentences(vocabulary);
  const std::set<audio::Sentence> known(phrases.begin(), phrases.end());
  std::vector<Sentence> sentences;
  std::ifstream lines(ZELVORA_SOURCE_DIR "/examples/shop/utterances.tsv");
  for (std::string line; sentences.size() < kSentences && std::getline(lines, line);) {
    const auto fields = fieldsOf(line);
    if (fields.size() < 3 || fields[2] != kLocale || known.contains(wordsOf(fields[0]))) continue;
    const bool isTask = fields[1] != "-" && !fields[1].starts_with('?');
    if (isTask && !line.starts_with("# ")) sentences.push_back({fields[0], fields[1]});
  }
  return inEveryVoice("paraphrases", sentences);
}

std::vector<ClipSet> strangeClips() {
  std::vector<Sentence> sentences;
  for (const char* const text : kStrangeSentences) sentences.push_back({text, ""});
  std::vector<ClipSet> sets = inEveryVoice("out of domain", sentences);
  ClipSet fresh{.name = "out of domain, new", .clips = {}};
  for (std::size_t i = 0; i < std::size(kNewStrangeSentences); ++i) {
    const std::string text = kNewStrangeSentences[i];
    const std::size_t voice = i % (kFliteVoices.size() + kEspeakVoices.size());
    fresh.clips.push_back(
        {wordsOf(text), "",
         voice < kFliteVoices.size()
             ? spoken(text, kFliteVoices.at(voice))
             : spokenByEspeak(text, kEspeakVoices.at(voice - kFliteVoices.size()))});
  }
  sets.push_back(std::move(fresh));
  return sets;
}

ClipSet wordlessClips() {
  std::vector<Clip> clips{wordless([](double) { return 0.0; })};
  std::mt19937 generator(3);
  const auto noise = [&](double strength) {
    return std::normal_distribution<double>(0, strength)(generator);
  };
  for (const double strength : {50.0, 200.0, 600.0, 1200.0, 2000.0, 6000.0})
    clips.push_back(wordless([&](double) { return noise(strength); }));
  for (const double strength : {100.0, 600.0, 3000.0}) {
    double brown = 0;
    clips.push_back(
        wordless([&](double) { return brown = 0.95 * brown + 0.31 * noise(strength); }));
  }
  clips.push_back(wordless([](double at) { return 8000 * sine(440, at); }));
  clips.push_back(wordless([](double at) { return 5000 * sine(100 + at / 40, at); }));
  clips.push_back(
      wordless([&](double at) { return 3000 * sine(50, at) + 1000 * sine(150, at) + noise(80); }));
  clips.push_back(wordless([](double at) { return std::fmod(at, 8000) < 20 ? 20000.0 : 0.0; }));
  clips.push_back(wordless([&](double at) { return noise(1500) * (0.5 + 0.5 * sine(3, at)); }));
  clips.push_back(
      wordless([&](double at) { return noise(4000) * std::exp(-std::fmod(at, 5333) / 600); }));
  return {.name = "wordless", .clips = std::move(clips)};
}

ClipSet peopleClips(const std::filesystem::path& table) {
  ClipSet people{.name = "people", .clips = {}};
  std::ifstream lines(table);
  for (std::string line; std::getline(lines, line);) {
    const auto fields = fieldsOf(line);
    if (fields.size() < 4 || line.starts_with('#')) continue;
    people.clips.push_back(
        {wordsOf(fields[3]), fields[1], soundOf(table.parent_path() / fields[0])});
  }
  return people;
}

}  // namespace zelvora::bench
