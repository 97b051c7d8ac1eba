#pragma once

#include <cstddef>
#include <cstdint>
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
#include <ZelvoraSDK/platform/audio.h>
#include <ZelvoraSDK/testing/system.h>

namespace zelvora::testing {

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

}  // namespace zelvora::testing
