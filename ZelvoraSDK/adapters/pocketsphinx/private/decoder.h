#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <ZelvoraSDK/adapters/audio/private/confidence.h>
#include <ZelvoraSDK/adapters/audio/private/pronunciation.h>
#include <ZelvoraSDK/adapters/audio/private/stream_recognizer.h>

namespace zelvora::sphinx {

/// A trigram model of the sentences in the ARPA format. Each n-gram that was seen is discounted by
/// half a count (absolute discounting), which goes to those that were not seen. Pure.
[[nodiscard]] std::string arpaTrigram(const std::vector<audio::Sentence>& sentences);

}  // namespace zelvora::sphinx

struct ps_decoder_s;

namespace zelvora::sphinx {

/// The folder with the English models: `chosen`; if that is empty, $ZELVORA_SPHINX_MODELS; else
/// pocketsphinx/model in the first of $XDG_DATA_HOME and $XDG_DATA_DIRS that has it; else the one
/// that this library was built for.
[[nodiscard]] std::filesystem::path modelFolder(const std::filesystem::path& chosen = {});

/// PocketSphinx with its models and the application's vocabulary.
class Decoder final : public audio::StreamDecoder {
 public:
  /// Takes half a second. Throws Error when a model in `models` can't be read.
  explicit Decoder(const std::vector<std::string>& vocabulary,
                   const std::filesystem::path& models = modelFolder());

  [[nodiscard]] static bool isInstalled(const std::filesystem::path& models);

  void begin(OpenedBy openedBy) override;
  void hear(std::span<const std::int16_t> sound) override;
  [[nodiscard]] SpeechResult partialResult() const override;
  SpeechResult end() override;
  /// Ends the utterance and returns what the library decoded, with its own confidences.
  audio::Decoded decoded();
  /// The application's result for that.
  [[nodiscard]] SpeechResult judged(const audio::Decoded& decoded) const;
  /// The evidence behind the confidence of that result.
  [[nodiscard]] audio::Evidence evidence(const audio::Decoded& decoded) const;

 private:
  struct Free {
    void operator()(ps_decoder_s* decoder) const;
  };

  [[nodiscard]] std::string phonesOf(const std::string& word) const;

  std::unique_ptr<ps_decoder_s, Free> decoder_;
  audio::TranscriptJudge judge_;
  OpenedBy openedBy_;  ///< Of the utterance.
  bool isRunning_ = false;
};

}  // namespace zelvora::sphinx
