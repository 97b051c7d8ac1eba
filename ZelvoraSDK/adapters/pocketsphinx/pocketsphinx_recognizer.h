#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform/speech.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

namespace audio {
class Decoders;
}

/// Understands US English on the device. Its locales are "en" with any region or none, in any case
/// and with "_" for "-". Callable from any thread.
///
/// A decoder takes about 115 MB and half a second to load. Loading starts in the background with
/// the first recogniser, and the decoder is kept until `release()`. It serves one task at a time:
/// starting a second one throws Error. The handler of a task must neither finish nor destroy the
/// task. If the model can't be read, the handler gets the Error. Errors have the domain
/// "ZelvoraSpeechRecognizer".
class ZELVORA_EXPORT PocketsphinxRecognizerFactory final : public SpeechRecognizerFactory {
 public:
  /// `vocabulary` holds phrases to expect besides those of each request, brand names included;
  /// phrases with digits or in a script other than Latin are skipped. Without any phrase the stock
  /// model is used. `log` gets a line for a region that the model does not speak. `models` is a
  /// folder with English models. When it is empty, the recogniser looks in $ZELVORA_SPHINX_MODELS,
  /// then in pocketsphinx/model below $XDG_DATA_HOME and $XDG_DATA_DIRS, then in the folder of this
  /// system's package.
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
  /// Waits until all sound given to tasks of the latest recogniser has been understood and
  /// reported: for recordings that are heard faster than they were spoken.
  void catchUp();

 private:
  void sayWhichEnglish(const std::string& locale);

  std::filesystem::path models_;
  std::unique_ptr<audio::Decoders> decoders_;
  std::shared_ptr<LogSink> log_;
  std::mutex mutex_;
  std::set<std::string> said_;  ///< Locales already logged; under the mutex.
};

}  // namespace zelvora
