#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include <ZelvoraSDK/platform/speech.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

namespace audio {
class Decoders;
}

/// Understands English on the device, as it is spoken in the USA: "en" with any region or none, in
/// any case and with "_" for "-"; none other. Callable from any thread.
///
/// A decoder takes some 115 MB and half a second to load, in the background from the first
/// recogniser on, and is kept until `release()`. It serves one task at a time: starting a second
/// one throws Error. The handler of a task must neither finish nor destroy the task. Where the
/// model can't be read, the handler gets the Error. Errors have the domain
/// "ZelvoraSpeechRecognizer".
class PocketsphinxRecognizerFactory final : public SpeechRecognizerFactory {
 public:
  /// `vocabulary` holds phrases to expect besides those of each request, names of brands included;
  /// those in another script than Latin or with digits are passed over. Without any the stock model
  /// is used. `log` gets a line for a region that the model does not speak. `models` is a
  /// folder with models of English; where it is empty, $ZELVORA_SPHINX_MODELS, then
  /// pocketsphinx/model below $XDG_DATA_HOME and $XDG_DATA_DIRS, then the one of this system's
  /// package.
  explicit PocketsphinxRecognizerFactory(std::vector<std::string> vocabulary = {},
                                         std::shared_ptr<LogSink> log = nullptr,
                                         const std::filesystem::path& models = {});
  ~PocketsphinxRecognizerFactory() override;

  std::unique_ptr<SpeechRecognizer> makeRecognizer(const std::string& locale) override;
  std::unique_ptr<SpeechRecognizer> makeRecognizerFor(const RecognitionRequest& request) override;
  void prepare(const RecognitionRequest& request) override;
  void release() override;

  /// Returns when the decoder that also expects `phrases` is loaded. Throws Error when its model
  /// can't be read.
  void preload(const std::vector<std::string>& phrases = {});
  /// Returns when all sound that tasks of the latest recogniser were given has been understood and
  /// reported: for recordings that are heard faster than they were spoken.
  void catchUp();

 private:
  void sayWhichEnglish(const std::string& locale);

  std::filesystem::path models_;
  std::unique_ptr<audio::Decoders> decoders_;
  std::shared_ptr<LogSink> log_;
  std::mutex mutex_;
  std::set<std::string> said_;  ///< Locales that had their line; under the mutex.
};

}  // namespace zelvora
