#include <benchmarks/voice/tally.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <utility>

#include <benchmarks/timing.h>
#include <benchmarks/voice/statistics.h>

namespace zelvora::bench {
namespace {

/// The façade's minimum confidence, unless an application sets another.
constexpr double kBelievable = 0.65;

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

double confidenceOf(const SpeechResult& result) {
  double sum = 0;
  for (const auto& segment : result.segments) sum += segment.confidence;
  return result.segments.empty() ? 0 : sum / static_cast<double>(result.segments.size());
}

void append(std::vector<double>& values, const std::vector<double>& more) {
  values.insert(values.end(), more.begin(), more.end());
}

std::string text(const char* format, double value) {
  char shown[32];
  std::snprintf(shown, sizeof shown, format, value);
  return shown;
}

double ratio(double part, double whole) { return whole > 0 ? part / whole : 0; }

/// Of all sounds in `names` that were measured with `recogniser`.
Tally sumOf(const Measured& measured, const std::string& recogniser,
            const std::vector<std::string>& names) {
  Tally sum;
  for (const std::string& name : names) {
    const auto sound = measured.find(name);
    if (sound == measured.end()) continue;
    if (const auto tally = sound->second.find(recogniser); tally != sound->second.end())
      sum.add(tally->second);
  }
  return sum;
}

}  // namespace

void Tally::add(const Clip& clip, const Answer& answer, const Domain& domain) {
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

void Tally::add(const Tally& other) {
  clips += other.clips;
  words += other.words;
  errors += other.errors;
  exact += other.exact;
  believed += other.believed;
  right += other.right;
  wrong += other.wrong;
  append(rightConfidences, other.rightConfidences);
  append(otherConfidences, other.otherConfidences);
  append(finalMilliseconds, other.finalMilliseconds);
  audioSeconds += other.audioSeconds;
  decodingSeconds += other.decodingSeconds;
}

void printHeading() {
  std::printf("%-22s %-20s %5s %6s %-20s %-20s %-20s %-20s %5s %6s %6s %6s\n", "sound",
              "recogniser", "clips", "WER %", "exact %", "believed %", "right %", "wrong %", "AUC",
              "final", "p95", "RTF");
}

void print(const std::string& sound, const Tallies& tallies) {
  for (const auto& [recogniser, tally] : tallies)
    std::printf("%-22s %-20s %5zu %6.1f %-20s %-20s %-20s %-20s %5.2f %6.1f %6.1f %6.3f\n",
                sound.c_str(), recogniser.c_str(), tally.clips,
                100 * ratio(static_cast<double>(tally.errors), static_cast<double>(tally.words)),
                shareWithInterval(tally.exact, tally.clips).c_str(),
                shareWithInterval(tally.believed, tally.clips).c_str(),
                shareWithInterval(tally.right, tally.clips).c_str(),
                shareWithInterval(tally.wrong, tally.clips).c_str(),
                areaUnderCurve(tally.rightConfidences, tally.otherConfidences),
                quantile(tally.finalMilliseconds, 0.5), quantile(tally.finalMilliseconds, 0.95),
                ratio(tally.decodingSeconds, tally.audioSeconds));
  std::fflush(stdout);
}

void printSummary(const Measured& measured, const std::vector<std::string>& recognisers) {
  using Names = std::vector<std::string>;
  const struct {
    const char* what;
    Names sounds;
    std::function<std::string(const Tally&)> value;
  } rows[] = {
      {"people: right screen, %",
       {"people"},
       [](const Tally& it) { return shareWithInterval(it.right, it.clips); }},
      {"people: wrong screen, %",
       {"people"},
       [](const Tally& it) { return shareWithInterval(it.wrong, it.clips); }},
      {"people: AUC of the confidence",
       {"people"},
       [](const Tally& it) {
         return text("%5.2f", areaUnderCurve(it.rightConfidences, it.otherConfidences));
       }},
      {"flite commands: exact, %",
       {"commands, flite"},
       [](const Tally& it) { return shareWithInterval(it.exact, it.clips); }},
      {"flite commands: right screen, %",
       {"commands, flite"},
       [](const Tally& it) { return shareWithInterval(it.right, it.clips); }},
      {"espeak commands: right screen, %",
       {"commands, espeak"},
       [](const Tally& it) { return shareWithInterval(it.right, it.clips); }},
      {"espeak commands: wrong screen, %",
       {"commands, espeak"},
       [](const Tally& it) { return shareWithInterval(it.wrong, it.clips); }},
      {"flite paraphrases: right screen, %",
       {"paraphrases, flite"},
       [](const Tally& it) { return shareWithInterval(it.right, it.clips); }},
      {"espeak paraphrases: right screen, %",
       {"paraphrases, espeak"},
       [](const Tally& it) { return shareWithInterval(it.right, it.clips); }},
      {"out of domain: a screen opens, %",
       {"out of domain, flite", "out of domain, espeak"},
       [](const Tally& it) { return shareWithInterval(it.wrong, it.clips); }},
      {"out of domain, new: a screen opens, %",
       {"out of domain, new"},
       [](const Tally& it) { return shareWithInterval(it.wrong, it.clips); }},
      {"wordless: believed, %",
       {"wordless"},
       [](const Tally& it) { return shareWithInterval(it.believed, it.clips); }},
      {"final text, median ms",
       {"people", "commands, flite", "commands, espeak"},
       [](const Tally& it) { return text("%5.1f", quantile(it.finalMilliseconds, 0.5)); }},
      {"final text, p95 ms",
       {"people", "commands, flite", "commands, espeak"},
       [](const Tally& it) { return text("%5.1f", quantile(it.finalMilliseconds, 0.95)); }},
      {"real-time factor",
       {"people", "commands, flite", "commands, espeak"},
       [](const Tally& it) { return text("%6.3f", ratio(it.decodingSeconds, it.audioSeconds)); }},
  };
  std::printf("%-38s", "");
  for (const std::string& recogniser : recognisers) std::printf("  %-20s", recogniser.c_str());
  std::printf("\n");
  for (const auto& row : rows) {
    std::printf("%-38s", row.what);
    for (const std::string& recogniser : recognisers) {
      const Tally tally = sumOf(measured, recogniser, row.sounds);
      std::printf("  %-20s", tally.clips == 0 ? "none" : row.value(tally).c_str());
    }
    std::printf("\n");
  }
}

}  // namespace zelvora::bench
