#include "recordings.h"

#include <algorithm>
#include <cstdint>
#include <future>
#include <map>
#include <memory>
#include <span>
#include <utility>

#include <ZelvoraSDK/adapters/pocketsphinx/pocketsphinx_recognizer.h>
#include <ZelvoraSDK/adapters/sndfile/sound_files.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/facade/spoken_phrases.h>
#include <ZelvoraSDK/facade/transcript_decision.h>
#include <ZelvoraSDK/routing/normalizer.h>
#include <ZelvoraSDK/speech/endpointing.h>

#include "../application.h"

namespace zelvora::tool {
namespace {

constexpr std::size_t kBufferFrames = 1024;
/// How often a capture is judged.
constexpr Seconds kMonitorPeriod{0.2};
constexpr Seconds kMaxWait{60};

/// One recogniser with a thread of its own. Its tasks report while `catchUp` waits for them.
class Ear {
 public:
  explicit Ear(const RecognitionRequest& request)
      : recognizer_(factory_.makeRecognizerFor(request)) {}

  /// Whether it knows the locale.
  [[nodiscard]] bool canHear() const { return recognizer_ && recognizer_->isAvailable(); }

  HeardRecording hear(const std::filesystem::path& file) {
    SoundReader sound(file);
    const double rate = sound.format().sampleRate;
    std::vector<float> samples(kBufferFrames * sound.format().channels);
    Capture capture;
    const auto task = recognizer_->startTask(
        true, {.onResult = [&](const SpeechResult& result) { capture.take(result); },
               .onError = [&](Error error) { capture.failure = std::move(error); }});
    for (std::size_t buffers = 1; !capture.isOver(); ++buffers) {
      // What is missing at the end of the file is silence.
      sound.read(samples);
      const PcmBuffer buffer{.format = sound.format(),
                             .frames = kBufferFrames,
                             .samples = std::span<const float>(samples)};
      capture.now = Seconds{static_cast<double>(buffers * kBufferFrames) / rate};
      if (capture.voice.hears(level(buffer), capture.now)) capture.lastVoice = capture.now;
      // Until `catchUp` returns, only the recogniser uses `capture`.
      task->append(buffer);
      factory_.catchUp();
      if (capture.failure) throw *capture.failure;
    }
    return heardBy(capture, task->finish(kMaxWait));
  }

 private:
  /// A capture in the recording's own time.
  struct Capture {
    Seconds now{};
    Seconds lastVoice{};
    Seconds nextLook = kMonitorPeriod;
    bool gotAnyResult = false;
    std::string lastText;
    std::optional<Error> failure;
    VoiceDetector voice;

    void take(const SpeechResult& result) {
      gotAnyResult = true;
      if (isBlank(result.text)) return;
      lastText = result.text;
      lastVoice = now;
    }

    bool isOver() {
      if (now < nextLook) return false;
      nextLook += kMonitorPeriod;
      return judge({.elapsed = now, .sinceVoice = now - lastVoice, .gotAnyResult = gotAnyResult},
                   EndpointLimits{}) != CaptureVerdict::keepListening;
    }
  };

  static HeardRecording heardBy(const Capture& capture, const std::optional<SpeechResult>& result) {
    const bool hasText = result && !isBlank(result->text);
    HeardRecording heard{.transcript = cleanedTranscript(hasText ? result->text : capture.lastText),
                         .confidence = {}};
    if (!result || result->segments.empty()) return heard;
    double sum = 0;
    for (const SpeechSegment& word : result->segments) sum += word.confidence;
    heard.confidence = sum / static_cast<double>(result->segments.size());
    return heard;
  }

  PocketsphinxRecognizerFactory factory_;
  std::unique_ptr<SpeechRecognizer> recognizer_;
};

/// The recognisers of one thread, by locale.
class Ears {
 public:
  Ears(const StoredSpec& spec, std::shared_ptr<const PreparedSpec> prepared)
      : spec_(spec), prepared_(std::move(prepared)) {}

  HeardRecording hear(const LabelledUtterance& utterance) {
    const std::string place = utterance.file.string() + ":" + std::to_string(utterance.line) + ": ";
    std::unique_ptr<Ear>& ear = ears_[utterance.locale];
    if (!ear)
      ear = std::make_unique<Ear>(RecognitionRequest{
          .locale = utterance.locale,
          .phrases = recognitionVocabulary(spec_, utterance.locale),
          .openedBy = [spec = prepared_, locale = utterance.locale](const std::string& text) {
            return openedLocally(text, *spec, locale);
          }});
    if (!ear->canHear()) throw UsageError(place + "no recogniser for " + utterance.locale);
    try {
      return ear->hear(utterance.file.parent_path() / utterance.text);
    } catch (const Error& failure) {
      throw UsageError(place + utterance.text + ": " + failure.description());
    }
  }

 private:
  const StoredSpec& spec_;
  std::shared_ptr<const PreparedSpec> prepared_;
  std::map<std::string, std::unique_ptr<Ear>> ears_;
};

std::vector<std::string> canonicalWords(const std::string& text) {
  const std::string canonical = normalizeForMatch(text);
  std::vector<std::string> all;
  for (CanonicalWords words(canonical); !words.done(); words.next()) all.emplace_back(words.word());
  return all;
}

std::size_t wordErrors(const std::vector<std::string>& said,
                       const std::vector<std::string>& heard) {
  std::vector<std::size_t> row(heard.size() + 1);
  for (std::size_t j = 0; j <= heard.size(); ++j) row[j] = j;
  for (const std::string& word : said) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < heard.size(); ++j) {
      const std::size_t changed = diagonal + (word == heard[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, diagonal + 1, row[j] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::vector<HeardRecording> hearAll(const std::vector<LabelledUtterance>& utterances,
                                    const StoredSpec& spec, unsigned threads,
                                    const std::function<void(double)>& progress) {
  const auto prepared = std::make_shared<const PreparedSpec>(spec);
  std::vector<HeardRecording> heard(utterances.size());
  const std::size_t lanes = std::clamp<std::size_t>(utterances.size(), 1, threads);
  // Each thread has its own recordings and recognisers, so nothing is shared that changes.
  const auto work = [&](std::size_t first) {
    Ears ears(spec, prepared);
    for (std::size_t i = first; i < utterances.size(); i += lanes) {
      heard[i] = ears.hear(utterances[i]);
      if (first == 0) progress(static_cast<double>(i + 1) / static_cast<double>(utterances.size()));
    }
  };
  std::vector<std::future<void>> others;
  for (std::size_t lane = 1; lane < lanes; ++lane)
    others.push_back(std::async(std::launch::async, work, lane));
  work(0);
  for (auto& other : others) other.get();
  return heard;
}

SpeechFigures figuresOf(const std::vector<LabelledUtterance>& utterances,
                        const std::vector<HeardRecording>& heard) {
  SpeechFigures figures;
  for (std::size_t i = 0; i < utterances.size(); ++i) {
    if (!utterances[i].reference) continue;
    const auto said = canonicalWords(*utterances[i].reference);
    const auto got = canonicalWords(heard[i].transcript);
    ++figures.references;
    figures.words += said.size();
    figures.errors += wordErrors(said, got);
    figures.exact += said == got;
  }
  return figures;
}

}  // namespace zelvora::tool
