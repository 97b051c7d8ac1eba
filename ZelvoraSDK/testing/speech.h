#pragma once

#include <atomic>
#include <boost/asio/experimental/concurrent_channel.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/speech.h>
#include <ZelvoraSDK/testing/audio.h>
#include <ZelvoraSDK/testing/system.h>

namespace zelvora::testing {

/// A result with a word of each confidence.
inline SpeechResult heard(std::string text, const std::vector<double>& confidences,
                          bool isFinal = false) {
  SpeechResult result{.text = std::move(text), .segments = {}, .isFinal = isFinal};
  for (const double confidence : confidences) result.segments.push_back({"word", confidence});
  return result;
}

/// The factory and the one recogniser behind it; the test says what it understands.
class StandInRecognizers final : public SpeechRecognizerFactory {
 public:
  using Handler = SpeechRecognizer::Handler;

  explicit StandInRecognizers(std::shared_ptr<Journal> journal) : journal_(std::move(journal)) {}

  bool known = true;      ///< Set before use.
  bool available = true;  ///< Set before use.
  /// Returned by the task's finish, as a recogniser does that is still busy when the sound ends.
  std::optional<SpeechResult> lateResult;

  void say(const SpeechResult& result) {
    const std::lock_guard lock(mutex_);
    if (handler_) handler_->onResult(result);
  }
  void fail(const Error& failure) {
    const std::lock_guard lock(mutex_);
    if (handler_) handler_->onError(failure);
  }
  [[nodiscard]] std::size_t heardFrames() {
    const std::lock_guard lock(mutex_);
    return heardFrames_;
  }

  /// What was asked for last.
  [[nodiscard]] RecognitionRequest request() {
    const std::lock_guard lock(mutex_);
    return request_;
  }

  std::unique_ptr<SpeechRecognizer> makeRecognizerFor(const RecognitionRequest& request) override {
    {
      const std::lock_guard lock(mutex_);
      request_ = request;
    }
    return makeRecognizer(request.locale);
  }
  void prepare(const RecognitionRequest& request) override {
    journal_->note("recogniser: prepare " + request.locale);
  }
  void release() override { journal_->note("recogniser: release"); }

  std::unique_ptr<SpeechRecognizer> makeRecognizer(const std::string&) override {
    journal_->calls.enter("make recogniser");
    if (!known) return nullptr;
    return std::make_unique<Recognizer>(*this);
  }

 private:
  class Task final : public SpeechRecognitionTask {
   public:
    Task(StandInRecognizers& all, Handler handler) : all_(all) {
      const std::lock_guard lock(all_.mutex_);
      all_.handler_ = std::move(handler);
      all_.running_ = this;
    }
    ~Task() override { drop(); }

    void append(const PcmBuffer& buffer) override {
      all_.journal_->calls.enter("append sound");
      const std::lock_guard lock(all_.mutex_);
      all_.heardFrames_ += buffer.frames;
    }
    void endAudio() override {
      all_.journal_->note("task: end of audio");
      all_.journal_->calls.enter("end audio");
    }
    std::optional<SpeechResult> finish(Seconds) override {
      all_.journal_->note("task: finish");
      all_.journal_->calls.enter("finish recognition");
      all_.fail(Error("Test", 216, "Recognition was Canceled"));
      drop();
      return all_.lateResult;
    }

   private:
    void drop() {
      const std::lock_guard lock(all_.mutex_);
      if (all_.running_ == this) all_.handler_.reset();
    }

    StandInRecognizers& all_;
  };

  class Recognizer final : public SpeechRecognizer {
   public:
    explicit Recognizer(StandInRecognizers& all) : all_(all) {}
    [[nodiscard]] bool isAvailable() const override { return all_.available; }
    std::unique_ptr<SpeechRecognitionTask> startTask(bool partialResults,
                                                     Handler handler) override {
      all_.journal_->calls.enter("start recognition");
      all_.journal_->note(partialResults ? "task: partial results" : "task: final result only");
      return std::make_unique<Task>(all_, std::move(handler));
    }

   private:
    StandInRecognizers& all_;
  };

  std::shared_ptr<Journal> journal_;
  std::mutex mutex_;
  RecognitionRequest request_;
  const Task* running_ = nullptr;
  std::optional<Handler> handler_;
  std::size_t heardFrames_ = 0;
};

class StandInPermissions final : public Permissions {
 public:
  explicit StandInPermissions(std::shared_ptr<Journal> journal = std::make_shared<Journal>())
      : journal_(std::move(journal)) {}

  SpeechStatus speech = SpeechStatus::authorized;  ///< Set before use.
  bool microphone = true;                          ///< Set before use.

  /// What the user has been asked so far.
  [[nodiscard]] std::vector<std::string> asked() const {
    const std::lock_guard lock(mutex_);
    return asked_;
  }

  asio::awaitable<SpeechStatus> requestSpeechRecognition() override {
    journal_->calls.enter("ask for speech");
    note("speech");
    co_await answer();
    co_return speech;
  }
  asio::awaitable<bool> requestMicrophone() override {
    journal_->calls.enter("ask for the microphone");
    note("microphone");
    co_await answer();
    co_return microphone;
  }

  /// From now on the user thinks before each answer, until `decide()`; perhaps for ever.
  void hesitate() {
    const std::lock_guard lock(mutex_);
    if (!decision_) decision_ = std::make_shared<Decision>();
  }
  void decide() {
    const std::lock_guard lock(mutex_);
    if (const auto decision = std::exchange(decision_, nullptr)) decision->made.close();
  }

 private:
  void note(std::string question) {
    const std::lock_guard lock(mutex_);
    asked_.push_back(std::move(question));
  }
  /// What all who wait for the user wait for.
  struct Decision {
    asio::io_context owner;  ///< Of the channel alone; nobody runs it.
    asio::experimental::concurrent_channel<asio::any_io_executor, void(boost::system::error_code)>
        made{owner};
  };

  asio::awaitable<void> answer() {
    std::shared_ptr<Decision> decision;
    {
      const std::lock_guard lock(mutex_);
      decision = decision_;
    }
    if (!decision) co_return;
    boost::system::error_code closed;
    co_await decision->made.async_receive(asio::redirect_error(asio::use_awaitable, closed));
  }

  std::shared_ptr<Journal> journal_;
  mutable std::mutex mutex_;
  std::vector<std::string> asked_;
  std::shared_ptr<Decision> decision_;
};

/// Records what it is asked to say and to silence.
class StandInSynthesizers final : public SpeechSynthesizerFactory {
 public:
  explicit StandInSynthesizers(std::shared_ptr<Journal> journal) : journal_(std::move(journal)) {}

  std::unique_ptr<SpeechSynthesizer> makeSynthesizer() override {
    return std::make_unique<Synthesizer>(journal_);
  }

 private:
  class Synthesizer final : public SpeechSynthesizer {
   public:
    explicit Synthesizer(std::shared_ptr<Journal> journal) : journal_(std::move(journal)) {}
    void speak(SpeechUtterance utterance) override {
      journal_->note("say " + utterance.language + " '" + utterance.text + "'");
      if (utterance.onEnd) utterance.onEnd(true);
    }
    void stopSpeaking() override { journal_->note("silence"); }

   private:
    std::shared_ptr<Journal> journal_;
  };

  std::shared_ptr<Journal> journal_;
};

/// All of them together.
struct SpeechStandIns {
  std::shared_ptr<Journal> journal = std::make_shared<Journal>();
  std::shared_ptr<StandInSession> session = std::make_shared<StandInSession>(journal);
  std::shared_ptr<StandInMicrophone> microphone = std::make_shared<StandInMicrophone>(journal);
  std::shared_ptr<StandInFiles> files = std::make_shared<StandInFiles>(journal);
  std::shared_ptr<StandInRecognizers> recognizer = std::make_shared<StandInRecognizers>(journal);
  std::shared_ptr<StandInPermissions> permissions = std::make_shared<StandInPermissions>(journal);
  std::shared_ptr<StandInSynthesizers> synthesizers =
      std::make_shared<StandInSynthesizers>(journal);

  [[nodiscard]] SpeechPlatform platform() const {
    return {session, microphone, files, recognizer, permissions, synthesizers};
  }
};

}  // namespace zelvora::testing
