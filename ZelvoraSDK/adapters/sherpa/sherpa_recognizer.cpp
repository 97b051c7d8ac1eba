#include <ZelvoraSDK/adapters/sherpa/sherpa_recognizer.h>

#include <algorithm>
#include <utility>

#include <ZelvoraSDK/adapters/audio/private/decoder_thread.h>
#include <ZelvoraSDK/adapters/audio/private/stream_recognizer.h>
#include <ZelvoraSDK/adapters/sherpa/private/transducer.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

std::string plain(const std::string& locale) {
  std::string name = lowercased(locale);
  std::ranges::replace(name, '_', '-');
  return name;
}

}  // namespace

SherpaRecognizerFactory::SherpaRecognizerFactory(
    SherpaModel model, std::vector<std::string> vocabulary,
    std::function<std::string(const std::string& text)> openedBy) {
  for (const std::string& locale : model.locales) locales_.push_back(plain(locale));
  thread_ = std::make_shared<audio::DecoderThread>(
      [which = std::move(model), phrases = std::move(vocabulary), opened = std::move(openedBy)] {
        return std::make_unique<sherpa::Transducer>(which, phrases, opened);
      });
}

std::unique_ptr<SpeechRecognizer> SherpaRecognizerFactory::makeRecognizer(
    const std::string& locale) {
  if (std::ranges::find(locales_, plain(locale)) == locales_.end()) return nullptr;
  thread_->loadInBackground();
  return audio::streamRecognizer(thread_, [] { return true; });
}

void SherpaRecognizerFactory::preload() {
  thread_->queue().wait([thread = thread_] { thread->decoder(); });
}

}  // namespace zelvora
