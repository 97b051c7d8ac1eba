#include <ZelvoraSDK/adapters/sherpa/sherpa_recognizer.h>

#include <algorithm>
#include <utility>

#include <ZelvoraSDK/adapters/audio/private/stream_recognizer.h>
#include <ZelvoraSDK/adapters/sherpa/private/transducer.h>

namespace zelvora {

SherpaRecognizerFactory::SherpaRecognizerFactory(SherpaModel model,
                                                 std::vector<std::string> vocabulary) {
  for (const std::string& locale : model.locales) locales_.push_back(audio::plainLocale(locale));
  decoders_ = std::make_unique<audio::Decoders>(
      std::move(vocabulary), [which = std::move(model)](const audio::Decoders::Phrases& phrases) {
        return std::make_unique<sherpa::Transducer>(which, phrases);
      });
}

SherpaRecognizerFactory::~SherpaRecognizerFactory() = default;

bool SherpaRecognizerFactory::speaks(const std::string& locale) const {
  return std::ranges::find(locales_, audio::plainLocale(locale)) != locales_.end();
}

std::unique_ptr<SpeechRecognizer> SherpaRecognizerFactory::makeRecognizer(
    const std::string& locale) {
  return makeRecognizerFor({.locale = locale});
}

std::unique_ptr<SpeechRecognizer> SherpaRecognizerFactory::makeRecognizerFor(
    const RecognitionRequest& request) {
  if (!speaks(request.locale)) return nullptr;
  auto thread = decoders_->expecting(request.phrases);
  thread->loadInBackground();
  return audio::streamRecognizer(std::move(thread), request.openedBy, [] { return true; });
}

void SherpaRecognizerFactory::prepare(const RecognitionRequest& request) {
  if (speaks(request.locale)) decoders_->expecting(request.phrases)->loadInBackground();
}

void SherpaRecognizerFactory::release() { decoders_->release(); }

void SherpaRecognizerFactory::preload() {
  const auto thread = decoders_->expecting({});
  thread->queue().wait([thread] { thread->decoder(); });
}

}  // namespace zelvora
