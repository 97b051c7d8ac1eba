#pragma once

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/adapters/audio/private/confidence.h>
#include <ZelvoraSDK/adapters/audio/private/stream_recognizer.h>
#include <ZelvoraSDK/adapters/sherpa/sherpa_recognizer.h>

namespace zelvora::sherpa {

/// The files of a streaming transducer.
struct ModelFiles {
  std::string encoder;
  std::string decoder;
  std::string joiner;
  std::string tokens;
  std::string bpeVocabulary;  ///< Empty when the folder has none.
};

/// Looks at the files without loading them. Throws Error that says which one is missing, empty or
/// not of a streaming transducer.
[[nodiscard]] ModelFiles modelFilesIn(const std::filesystem::path& folder);

/// Has another process decode a second of silence with the model, because the library ends the
/// process that loads a bad one. Throws Error with the reason.
void tryModel(const std::filesystem::path& folder);

}  // namespace zelvora::sherpa

struct SherpaOnnxOnlineRecognizer;
struct SherpaOnnxOnlineStream;

namespace zelvora::sherpa {

/// The words of a result that the library wrote as JSON: lower case, each with the geometric mean
/// of its tokens' probabilities. Pure.
[[nodiscard]] std::vector<SpeechSegment> wordsOf(std::string_view json);

/// The phrases as the model's tokens spell them: upper case, one per line. Pure.
[[nodiscard]] std::string hotwordsOf(const std::vector<std::string>& phrases);

/// A streaming transducer, loaded. Confined to one thread.
class Transducer final : public audio::StreamDecoder {
 public:
  /// Checks the model first. Throws Error with the reason when it is bad.
  Transducer(const SherpaModel& model, const std::vector<std::string>& vocabulary);

  void begin(OpenedBy openedBy) override;
  void hear(std::span<const std::int16_t> sound) override;
  [[nodiscard]] SpeechResult partialResult() const override;
  SpeechResult end() override;
  /// Ends the utterance and returns what the model decoded.
  audio::Decoded decoded();
  /// The application's result for that.
  [[nodiscard]] SpeechResult judged(const audio::Decoded& decoded) const;
  /// The evidence behind the confidence of that result.
  [[nodiscard]] audio::Evidence evidence(const audio::Decoded& decoded) const;

 private:
  struct Free {
    void operator()(const SherpaOnnxOnlineRecognizer* recognizer) const;
    void operator()(const SherpaOnnxOnlineStream* stream) const;
  };

  void accept(std::span<const float> sound);
  [[nodiscard]] std::vector<SpeechSegment> words() const;

  std::unique_ptr<const SherpaOnnxOnlineRecognizer, Free> recognizer_;
  std::unique_ptr<const SherpaOnnxOnlineStream, Free> stream_;
  audio::TranscriptJudge judge_;
  OpenedBy openedBy_;  ///< Of the utterance.
};

/// Loads the model in this process and decodes a second of silence, for the trial program. False
/// when the library refuses the model; it may also end the process.
[[nodiscard]] bool decodesSilence(const ModelFiles& files);

}  // namespace zelvora::sherpa
