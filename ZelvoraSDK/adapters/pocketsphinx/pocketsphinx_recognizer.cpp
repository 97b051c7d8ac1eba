#include <ZelvoraSDK/adapters/pocketsphinx/pocketsphinx_recognizer.h>

#include <algorithm>
#include <utility>

#include <ZelvoraSDK/adapters/audio/private/decoder_thread.h>
#include <ZelvoraSDK/adapters/audio/private/stream_recognizer.h>
#include <ZelvoraSDK/adapters/pocketsphinx/private/decoder.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

bool isUsEnglish(const std::string& locale) {
  std::string plain = lowercased(locale);
  std::ranges::replace(plain, '_', '-');
  return plain == "en" || plain == "en-us";
}

}  // namespace

PocketsphinxRecognizerFactory::PocketsphinxRecognizerFactory(
    std::vector<std::string> vocabulary,
    std::function<std::string(const std::string& text)> openedBy)
    : thread_(std::make_shared<audio::DecoderThread>(
          [phrases = std::move(vocabulary), opened = std::move(openedBy)] {
            return std::make_unique<sphinx::Decoder>(phrases, opened);
          })) {}

std::unique_ptr<SpeechRecognizer> PocketsphinxRecognizerFactory::makeRecognizer(
    const std::string& locale) {
  if (!isUsEnglish(locale)) return nullptr;
  thread_->loadInBackground();
  return audio::streamRecognizer(thread_, [] { return sphinx::Decoder::isInstalled(); });
}

void PocketsphinxRecognizerFactory::preload() {
  thread_->queue().wait([thread = thread_] { thread->decoder(); });
}

void PocketsphinxRecognizerFactory::catchUp() {
  thread_->queue().wait([] {});
}

}  // namespace zelvora
