#include <ZelvoraSDK/adapters/pocketsphinx/pocketsphinx_recognizer.h>

#include <utility>

#include <ZelvoraSDK/adapters/audio/private/stream_recognizer.h>
#include <ZelvoraSDK/adapters/pocketsphinx/private/decoder.h>

namespace zelvora {
namespace {

bool isEnglish(const std::string& locale) {
  const std::string name = audio::plainLocale(locale);
  return name == "en" || name.starts_with("en-");
}

}  // namespace

PocketsphinxRecognizerFactory::PocketsphinxRecognizerFactory(std::vector<std::string> vocabulary,
                                                             std::shared_ptr<LogSink> log,
                                                             const std::filesystem::path& models)
    : models_(sphinx::modelFolder(models)),
      decoders_(std::make_unique<audio::Decoders>(
          std::move(vocabulary),
          [folder = models_](const audio::Decoders::Phrases& phrases) {
            return std::make_unique<sphinx::Decoder>(phrases, folder);
          })),
      log_(std::move(log)) {}

PocketsphinxRecognizerFactory::~PocketsphinxRecognizerFactory() = default;

std::unique_ptr<SpeechRecognizer> PocketsphinxRecognizerFactory::makeRecognizer(
    const std::string& locale) {
  return makeRecognizerFor({.locale = locale});
}

std::unique_ptr<SpeechRecognizer> PocketsphinxRecognizerFactory::makeRecognizerFor(
    const RecognitionRequest& request) {
  if (!isEnglish(request.locale)) return nullptr;
  sayWhichEnglish(request.locale);
  auto thread = decoders_->expecting(request.phrases);
  thread->loadInBackground();
  return audio::streamRecognizer(std::move(thread), request.openedBy, [folder = models_] {
    return sphinx::Decoder::isInstalled(folder);
  });
}

void PocketsphinxRecognizerFactory::prepare(const RecognitionRequest& request) {
  if (isEnglish(request.locale)) decoders_->expecting(request.phrases)->loadInBackground();
}

void PocketsphinxRecognizerFactory::release() { decoders_->release(); }

void PocketsphinxRecognizerFactory::preload(const std::vector<std::string>& phrases) {
  const auto thread = decoders_->expecting(phrases);
  thread->queue().wait([thread] { thread->decoder(); });
}

void PocketsphinxRecognizerFactory::sayWhichEnglish(const std::string& locale) {
  const std::string name = audio::plainLocale(locale);
  if (!log_ || name == "en" || name == "en-us") return;
  const std::scoped_lock lock(mutex_);
  if (said_.insert(name).second) log_->write("[Zelvora][Speech] " + locale + " is heard as en-US");
}

void PocketsphinxRecognizerFactory::catchUp() {
  if (const auto thread = decoders_->latest()) thread->queue().wait([] {});
}

}  // namespace zelvora
