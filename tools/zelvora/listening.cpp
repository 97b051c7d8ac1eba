#include "listening.h"

#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>
#include <csignal>
#include <utility>

#include <ZelvoraSDK/speech/metered_engines.h>

namespace zelvora::tool {
namespace {

/// One spoken command: starts, watches the recogniser, and stops once.
class Listening {
 public:
  Listening(Application& application, const ListeningObserver& observer)
      : application_(application),
        observer_(observer),
        interrupts_(application.loop().executor(), SIGINT, SIGTERM) {}

  Heard run() {
    if (observer_.onLevel) showLevels();
    application_.hooks().onTranscript = [this](std::string text) {
      heard_.transcript = std::move(text);
    };
    Zelvora& zelvora = application_.facade();
    zelvora.onAuditEvent = observer_.onAuditEvent;
    zelvora.onResult = [this](ZelvoraResult result) { end(std::move(result)); };
    interrupts_.async_wait([this](const boost::system::error_code& error, int) {
      if (error) return;
      interrupts_.clear();
      stop();
    });
    const auto watching = zelvora.objectWillChange().subscribe([this] { look(); });
    zelvora.startVoice();
    // Nothing is started, and nothing told, where speech is disabled.
    if (zelvora.sttConfig().mode == ZelvoraSTTMode::disabled) stop();
    application_.loop().run();
    return std::move(heard_);
  }

 private:
  /// The levels come on the audio thread.
  void showLevels() {
    auto& engines = application_.speech().audioEngines;
    engines = std::make_shared<MeteredAudioEngineFactory>(
        engines, [main = application_.loop().executor(), show = observer_.onLevel](float level) {
          asio::post(main, [show, level] { show(level); });
        });
  }

  /// Looks at the recogniser after a change.
  void look() {
    const auto recognizer = application_.facade().stt();
    const bool isRecording = recognizer->isRecording();
    if (observer_.onChange) observer_.onChange(isRecording, recognizer->transcript());
    const auto error = recognizer->errorMessage();
    if (error && error != lastError_ && observer_.onError) observer_.onError(*error);
    lastError_ = error;
    const bool hasEnded = wasRecording_ && !isRecording;
    wasRecording_ = isRecording;
    if (hasEnded || (error && !isRecording)) stop();
  }

  void stop() {
    if (!std::exchange(isStopped_, true)) application_.facade().stopVoice();
  }

  void end(ZelvoraResult result) {
    if (std::exchange(hasEnded_, true)) return;
    heard_.result = std::move(result);
    if (const auto recognizer = application_.facade().stt()) {
      heard_.deviceTranscript = recognizer->bestTranscript();
      heard_.deviceConfidence = recognizer->bestTranscriptConfidence();
    }
    heard_.recording = application_.facade().lastRecordedAudio();
    application_.loop().stop();
  }

  Application& application_;
  const ListeningObserver& observer_;
  asio::signal_set interrupts_;
  Heard heard_;
  std::optional<std::string> lastError_;
  bool wasRecording_ = false;
  bool isStopped_ = false;
  bool hasEnded_ = false;
};

}  // namespace

Heard listen(Application& application, const ListeningObserver& observer) {
  return Listening(application, observer).run();
}

}  // namespace zelvora::tool
