#pragma once

#include <atomic>
#include <boost/asio/post.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/speech.h>
#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/speech/capture_time.h>

// Stand-ins at the ports of sound and speech. They note each call and do what the test says.
// All are callable from any thread.

namespace zelvora::testing {

/// The calls of a test's ports, counted, so that the test can step in at one of them: be slow,
/// fail by throwing an Error, release the caller.
class PortCalls {
 public:
  using Visit = std::function<void(std::size_t number, const std::string& call)>;

  /// Called before each call of a port, on its thread, with the call's number from 1 and its name.
  /// Null for nothing. Waits until the visit before is not running any more, so that one may use
  /// what the test owns; not to be called inside a visit.
  void onCall(Visit visit) {
    std::unique_lock lock(mutex_);
    visit_ = visit ? std::make_shared<const Visit>(std::move(visit)) : nullptr;
    visitEnded_.wait(lock, [this] { return visiting_ == 0; });
  }
  /// Calls `act` inside the `number`th call.
  void at(std::size_t number, std::function<void()> act) {
    onCall([number, act = std::move(act)](std::size_t now, const std::string& /*call*/) {
      if (now == number) act();
    });
  }
  /// For the stand-ins: throws what the visit throws.
  void enter(const std::string& call) {
    std::unique_lock lock(mutex_);
    const std::size_t number = ++count_;
    if (!visit_) return;
    ++visiting_;
    const std::shared_ptr<void> atEnd(nullptr, [this](void*) { endVisit(); });
    const auto visit = visit_;
    lock.unlock();
    (*visit)(number, call);
  }
  [[nodiscard]] std::size_t count() const {
    const std::lock_guard lock(mutex_);
    return count_;
  }

 private:
  void endVisit() {
    const std::lock_guard lock(mutex_);
    --visiting_;
    visitEnded_.notify_all();
  }

  mutable std::mutex mutex_;
  std::condition_variable visitEnded_;
  std::size_t count_ = 0;
  std::size_t visiting_ = 0;
  std::shared_ptr<const Visit> visit_;
};

/// What happened, in order.
class Journal final : public LogSink {
 public:
  PortCalls calls;

  void note(std::string line) {
    const std::lock_guard lock(mutex_);
    lines_.push_back(std::move(line));
  }
  void write(std::string_view line) override { note(std::string(line)); }

  /// Everything since the last call.
  std::vector<std::string> take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(lines_, {});
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> lines_;
};

class StandInSession final : public AudioSession {
 public:
  explicit StandInSession(std::shared_ptr<Journal> journal) : journal_(std::move(journal)) {}

  std::optional<Error> refusal;  ///< Set before use.

  void configure(Category category, Mode mode, std::uint32_t options) override {
    journal_->calls.enter("configure session");
    const bool listening = category == Category::playAndRecord && mode == Mode::voiceChat;
    journal_->note((listening ? "session: listen " : "session: other ") + std::to_string(options));
    if (refusal) throw *refusal;
  }
  void setActive(bool active) override {
    journal_->calls.enter(active ? "activate session" : "deactivate session");
    journal_->note(active ? "session: on" : "session: off");
    if (!active) throw Error("Test", 1, "a session that does not let go");
  }
  std::shared_ptr<void> onInterruption(std::function<void(Error)> handler) override {
    journal_->calls.enter("watch interruptions");
    const std::lock_guard lock(mutex_);
    auto watching = std::make_shared<std::function<void(Error)>>(std::move(handler));
    handler_ = watching;
    return watching;
  }
  /// The system takes the sound away.
  void interrupt(const Error& cause) {
    std::unique_lock lock(mutex_);
    const auto handler = handler_.lock();
    lock.unlock();
    if (handler) (*handler)(cause);
  }

 private:
  std::shared_ptr<Journal> journal_;
  std::mutex mutex_;
  std::weak_ptr<std::function<void(Error)>> handler_;
};

/// The factory and the one microphone behind its engines.
class StandInMicrophone final : public AudioEngineFactory {
 public:
  explicit StandInMicrophone(std::shared_ptr<Journal> journal) : journal_(std::move(journal)) {}

  AudioFormat format{48000, 1};       ///< Set before use.
  std::optional<Error> startFailure;  ///< Set before use.
  std::optional<Error> inputFailure;  ///< Set before use: why `format` has no channels.

  /// Hands a buffer to the tap, if there is one.
  void play(const std::vector<float>& samples) {
    play(PcmBuffer{format, samples.size() / format.channels, std::span<const float>(samples)});
  }
  void play(const PcmBuffer& buffer) {
    const std::lock_guard lock(mutex_);
    if (tap_) tap_(buffer);
  }
  void vanish(const Error& failure) {
    const std::lock_guard lock(mutex_);
    if (onFailure_) onFailure_(failure);
  }
  [[nodiscard]] bool isOn() {
    const std::lock_guard lock(mutex_);
    return openEngines_ > 0;
  }

  std::unique_ptr<AudioEngine> makeEngine() override {
    journal_->calls.enter("make engine");
    return std::make_unique<Engine>(*this);
  }

 private:
  class Engine final : public AudioEngine {
   public:
    explicit Engine(StandInMicrophone& microphone) : microphone_(microphone) {}
    ~Engine() override { dropTap(); }

    AudioFormat inputFormat() override {
      microphone_.journal_->calls.enter("input format");
      return microphone_.format;
    }
    std::optional<Error> inputFailure() override { return microphone_.inputFailure; }
    void installTap(std::size_t bufferFrames, Tap tap) override {
      microphone_.journal_->calls.enter("install tap");
      microphone_.journal_->note("tap on " + std::to_string(bufferFrames));
      const std::lock_guard lock(microphone_.mutex_);
      microphone_.tap_ = std::move(tap);
      microphone_.tapped_ = this;
    }
    void removeTap() override {
      dropTap();
      microphone_.journal_->calls.enter("remove tap");
    }
    void onFailure(FailureHandler handler) override {
      const std::lock_guard lock(microphone_.mutex_);
      pendingFailureHandler_ = std::move(handler);
    }
    void prepare() override {}
    void start() override {
      microphone_.journal_->calls.enter("start microphone");
      if (microphone_.startFailure) throw *microphone_.startFailure;
      microphone_.journal_->note("microphone on");
      const std::lock_guard lock(microphone_.mutex_);
      microphone_.onFailure_ = pendingFailureHandler_;
      setRunning(true);
    }
    [[nodiscard]] bool isRunning() const override { return running_; }
    void stop() override {
      microphone_.journal_->note("microphone off");
      {
        const std::lock_guard lock(microphone_.mutex_);
        setRunning(false);
      }
      microphone_.journal_->calls.enter("stop microphone");
    }
    void reset() override { microphone_.journal_->calls.enter("reset engine"); }

   private:
    void setRunning(bool running) {
      if (std::exchange(running_, running) != running) microphone_.openEngines_ += running ? 1 : -1;
    }
    void dropTap() {
      const std::lock_guard lock(microphone_.mutex_);
      if (microphone_.tapped_ != this) return;  // the tap is a later engine's
      microphone_.journal_->note("tap off");
      microphone_.tapped_ = nullptr;
      microphone_.tap_ = nullptr;
      microphone_.onFailure_ = nullptr;
    }

    StandInMicrophone& microphone_;
    FailureHandler pendingFailureHandler_;
    bool running_ = false;
  };

  std::shared_ptr<Journal> journal_;
  std::mutex mutex_;
  int openEngines_ = 0;
  const Engine* tapped_ = nullptr;
  AudioEngine::Tap tap_;
  AudioEngine::FailureHandler onFailure_;
};

/// Writes the bytes of float samples, nothing else. What is not flushed is not on disk.
class StandInFiles final : public AudioFileFactory {
 public:
  explicit StandInFiles(std::shared_ptr<Journal> journal) : journal_(std::move(journal)) {}

  std::optional<Error> createFailure;              ///< Set before use.
  std::optional<Error> writeFailure;               ///< Set before use.
  std::optional<std::filesystem::path> abandoned;  ///< Set before use.

  std::unique_ptr<AudioFileWriter> create(const std::filesystem::path& path,
                                          const AudioFormat&) override {
    journal_->calls.enter("create recording");
    if (createFailure) throw *createFailure;
    return std::make_unique<Writer>(*this, path);
  }
  [[nodiscard]] bool isAbandoned(const std::filesystem::path& path) override {
    return path == abandoned;
  }

 private:
  class Writer final : public AudioFileWriter {
   public:
    Writer(StandInFiles& files, const std::filesystem::path& path)
        : files_(files), file_(path, std::ios::binary) {}

    void write(const PcmBuffer& buffer) override {
      files_.journal_->calls.enter("write recording");
      if (files_.writeFailure) throw *files_.writeFailure;
      const auto samples = std::as_bytes(std::get<std::span<const float>>(buffer.samples));
      file_.write(reinterpret_cast<const char*>(samples.data()),
                  static_cast<std::streamsize>(samples.size()));
    }
    void flush() override {
      files_.journal_->note("file flushed");
      file_.flush();
      files_.journal_->calls.enter("flush recording");
    }

   private:
    StandInFiles& files_;
    std::ofstream file_;
  };

  std::shared_ptr<Journal> journal_;
};

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

  SpeechStatus speech = SpeechStatus::authorized;
  bool microphone = true;
  std::vector<std::string> asked;

  asio::awaitable<SpeechStatus> requestSpeechRecognition() override {
    journal_->calls.enter("ask for speech");
    asked.emplace_back("speech");
    co_await answer();
    co_return speech;
  }
  asio::awaitable<bool> requestMicrophone() override {
    journal_->calls.enter("ask for the microphone");
    asked.emplace_back("microphone");
    co_await answer();
    co_return microphone;
  }

  /// From now on the user thinks before each answer, until `decide()`; perhaps for ever.
  void hesitate() { isHesitating_ = true; }
  void decide() {
    isHesitating_ = false;
    const std::lock_guard lock(mutex_);
    for (const auto& thinking : thinking_) thinking->cancel();
    thinking_.clear();
  }

 private:
  asio::awaitable<void> answer() {
    if (!isHesitating_) co_return;
    const auto executor = co_await asio::this_coro::executor;
    const auto thinking =
        std::make_shared<asio::steady_timer>(executor, asio::steady_timer::time_point::max());
    {
      const std::lock_guard lock(mutex_);
      thinking_.push_back(thinking);
    }
    boost::system::error_code decided;
    co_await thinking->async_wait(asio::redirect_error(asio::use_awaitable, decided));
  }

  std::shared_ptr<Journal> journal_;
  std::atomic<bool> isHesitating_ = false;
  std::mutex mutex_;
  std::vector<std::shared_ptr<asio::steady_timer>> thinking_;
};

/// Notes what it is told to say and to silence.
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

/// Time that passes when the test says so.
class ManualTime final : public CaptureTime {
 public:
  Seconds now() override {
    const std::lock_guard lock(mutex_);
    return now_;
  }
  std::shared_ptr<void> startTicking(asio::any_io_executor executor, Seconds period,
                                     std::function<void()> tick) override {
    const std::lock_guard lock(mutex_);
    auto ticking = std::make_shared<Ticking>(
        Ticking{std::move(executor), now_ + period, period, std::move(tick)});
    ticking_ = ticking;
    return ticking;
  }

  /// Lets time pass tick by tick, and posts each tick that falls due. `afterTick` lets the ticks'
  /// executor catch up.
  template <class AfterTick>
  void pass(Seconds duration, AfterTick afterTick) {
    const Seconds end = now() + duration;
    while (postNextTick(end)) afterTick();
    const std::lock_guard lock(mutex_);
    now_ = end;
  }

 private:
  struct Ticking {
    asio::any_io_executor executor;
    Seconds next;
    Seconds period;
    std::function<void()> tick;
  };

  bool postNextTick(Seconds end) {
    const std::lock_guard lock(mutex_);
    const auto ticking = ticking_.lock();
    if (!ticking || ticking->next > end) return false;
    now_ = ticking->next;
    ticking->next += ticking->period;
    asio::post(ticking->executor, [weak = ticking_] {
      if (const auto running = weak.lock()) running->tick();
    });
    return true;
  }

  std::mutex mutex_;
  Seconds now_{1000};
  std::weak_ptr<Ticking> ticking_;
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
  std::shared_ptr<ManualTime> time = std::make_shared<ManualTime>();

  [[nodiscard]] SpeechPlatform platform() const {
    return {session, microphone, files, recognizer, permissions, synthesizers};
  }
};

}  // namespace zelvora::testing
