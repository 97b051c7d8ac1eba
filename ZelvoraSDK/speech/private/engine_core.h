#pragma once

#include <cstddef>
#include <exception>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/async/serial_queue.h>
#include <ZelvoraSDK/platform/audio.h>
#include <ZelvoraSDK/speech/private/sound_path.h>
#include <ZelvoraSDK/speech/speech_engine.h>

namespace zelvora {

/// A capture's share in an audio session that several engines may use at once. The session is
/// active while there is a share. Making and releasing one calls the session, on the caller's
/// thread, one caller at a time.
class SessionShare {
 public:
  /// Configures the session for listening and activates it. Throws Error when the system refuses;
  /// nothing is held then.
  explicit SessionShare(std::shared_ptr<AudioSession> session)
      : session_(std::move(session)), count_(countOf(*session_)) {
    count_->with([this](int& shares) {
      session_->configure(AudioSession::Category::playAndRecord, AudioSession::Mode::voiceChat,
                          AudioSession::kDuckOthers | AudioSession::kDefaultToSpeaker);
      session_->setActive(true);
      ++shares;
    });
  }
  ~SessionShare() {
    count_->with([this](int& shares) {
      if (--shares == 0) deactivate();
    });
  }

  SessionShare(const SessionShare&) = delete;
  SessionShare& operator=(const SessionShare&) = delete;

 private:
  using Count = Guarded<int>;

  /// Platforms may share a session, so there is one count per session.
  static std::shared_ptr<Count> countOf(const AudioSession& session) {
    using Counts = Guarded<std::map<const AudioSession*, std::weak_ptr<Count>>>;
    static auto* const counts = new Counts;  // never destroyed: engines may end at exit
    return counts->with([&](auto& all) {
      std::erase_if(all, [](const auto& entry) { return entry.second.expired(); });
      std::weak_ptr<Count>& held = all[&session];
      auto count = held.lock();
      if (!count) held = count = std::make_shared<Count>();
      return count;
    });
  }

  void deactivate() {
    try {
      session_->setActive(false);
    } catch (const std::exception&) {
      // The capture is over either way.
    }
  }

  std::shared_ptr<AudioSession> session_;
  std::shared_ptr<Count> count_;
};

/// What the recogniser has made of one capture. Written on the recogniser's thread as results come,
/// so that a reader gets them all.
struct CaptureHearing {
  CaptureNumber number = 0;
  std::string lastNonEmpty;
  std::optional<double> lastAverage;      ///< Of the last result.
  std::optional<double> finalConfidence;  ///< Of the final result.
  Seconds lastTextAt{-std::numeric_limits<double>::infinity()};
  bool gotAnyResult = false;
  bool isClosed = false;  ///< What comes now is dropped.
};

/// The state of a speech engine. Confined to the engine's queue, where it is also destroyed; that
/// ends a capture under way without reporting it.
class EngineCore : public std::enable_shared_from_this<EngineCore> {
 public:
  using Hearing = Guarded<CaptureHearing>;

  EngineCore(std::string locale, ZelvoraSpeechEngine::Parts parts, SerialQueue queue,
             std::weak_ptr<SpeechEngineCallbacks> callbacks);
  ~EngineCore();
  EngineCore(const EngineCore&) = delete;
  EngineCore& operator=(const EngineCore&) = delete;

  /// Makes the first recogniser, so that it loads before a capture, and cleans up the directory.
  void begin();
  void start(CaptureNumber number);
  void stop();
  void reset();
  void prepare();
  void release();
  /// Ends everything and reports nothing. No capture starts after that.
  void close();
  /// Ends the capture of `hearing`, if it is under way.
  void end(const std::shared_ptr<Hearing>& hearing, CaptureEnd why);

  [[nodiscard]] std::string lastNonEmpty() const;
  [[nodiscard]] std::optional<double> lastAverageConfidence() const;

 private:
  static constexpr Seconds kMonitorPeriod{0.2};
  static constexpr std::size_t kTapFrames = 1024;
  /// Together less than a stop waits, so that a late recogniser costs only its own result.
  static constexpr Seconds kFinishLimit{0.8};
  static constexpr Seconds kDrainLimit{0.3};

  [[nodiscard]] const RecognitionRequest& request();
  bool renewRecognizer();
  void refuse(CaptureNumber number, std::string message);
  void refuseWithoutMicrophone(CaptureNumber number);
  bool openMicrophone(CaptureNumber number, Seconds t0);
  void startListening(CaptureNumber number, Seconds t0);
  void watch();
  void monitor();
  void teardown(CaptureEnd why);
  void letGo();
  void stopMicrophone();
  void finishRecognition();
  std::optional<AudioData> takeRecording();
  void takeResult(const std::shared_ptr<Hearing>& hearing, const SpeechResult& result);
  CaptureOutcome outcomeOf(CaptureEnd why) const;

  template <class... Values>
  void call(std::function<void(Values...)> SpeechEngineCallbacks::*callback,
            std::type_identity_t<Values>... values) const;
  void logDuration(const char* what, Seconds t0) const;

  std::string locale_;
  ZelvoraSpeechEngine::Parts parts_;
  SerialQueue queue_;
  std::weak_ptr<SpeechEngineCallbacks> callbacks_;

  std::optional<RecognitionRequest> request_;
  std::unique_ptr<SpeechRecognizer> recognizer_;
  std::optional<SessionShare> session_;
  std::shared_ptr<void> interruptions_;
  std::unique_ptr<AudioEngine> audioEngine_;
  std::shared_ptr<SpeechRecognitionTask> task_;  ///< Shared with the sound's path.
  std::unique_ptr<Recording> recording_;
  std::unique_ptr<SoundPath> sound_;
  std::shared_ptr<Hearing> hearing_ = std::make_shared<Hearing>();  ///< Of the last capture.
  Seconds startedAt_{};
  bool isRecording_ = false;
  bool isClosed_ = false;
  std::shared_ptr<void> ticking_;
};

}  // namespace zelvora
