#pragma once

#include <atomic>
#include <bit>
#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/awaitable.hpp>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <stop_token>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/speech.h>

// The ports of an application that listens and speaks.

namespace porting {

/// Where a phone would ask its sound system to play, to record, and to lower other sound.
class PhoneSession final : public zelvora::AudioSession {
 public:
  void configure(Category, Mode, std::uint32_t) override {}
  void setActive(bool) override {}
};

/// Hears a third of a second of sound, then silence, buffer by buffer on a thread of its own.
class PhoneMicrophone final : public zelvora::AudioEngine {
 public:
  ~PhoneMicrophone() override { stop(); }

  zelvora::AudioFormat inputFormat() override { return {.sampleRate = 48000, .channels = 1}; }
  void installTap(std::size_t bufferFrames, Tap tap) override {
    const std::lock_guard lock(mutex_);
    frames_ = bufferFrames;
    tap_ = std::move(tap);
  }
  void removeTap() override {
    const std::lock_guard lock(mutex_);  // waits for a tap that is running
    tap_ = nullptr;
  }
  void onFailure(FailureHandler) override {}  // this microphone does not break
  void prepare() override {}
  void start() override {
    thread_ = std::jthread([this](const std::stop_token& stopped) { deliver(stopped); });
  }
  [[nodiscard]] bool isRunning() const override { return thread_.joinable(); }
  void stop() override {
    thread_.request_stop();
    if (thread_.joinable()) thread_.join();
  }
  void reset() override { stop(); }

 private:
  void deliver(const std::stop_token& stopped) {
    for (std::size_t heard = 0; !stopped.stop_requested(); heard += frames_) {
      const std::vector<float> samples(frames_, heard < 16000 ? 0.2F : 0.0F);
      {
        const std::lock_guard lock(mutex_);
        if (tap_) tap_({.format = inputFormat(), .frames = frames_, .samples = std::span(samples)});
      }
      std::this_thread::sleep_for(std::chrono::microseconds(frames_ * 1'000'000 / 48000));
    }
  }

  std::mutex mutex_;
  std::size_t frames_ = 1024;
  Tap tap_;
  std::jthread thread_;
};

class PhoneMicrophones final : public zelvora::AudioEngineFactory {
 public:
  std::unique_ptr<zelvora::AudioEngine> makeEngine() override {
    return std::make_unique<PhoneMicrophone>();
  }
};

/// One channel of floats in a Core Audio Format file. The length of the sound is written as
/// "unknown, to the end of the file", so that the file is complete after each write.
class PhoneRecording final : public zelvora::AudioFileWriter {
 public:
  PhoneRecording(const std::filesystem::path& path, const zelvora::AudioFormat& format)
      : file_(path, std::ios::binary) {
    file_ << "caff" << big<std::uint16_t>(1) << big<std::uint16_t>(0);
    file_ << "desc" << big<std::uint64_t>(32)
          << big(std::bit_cast<std::uint64_t>(format.sampleRate)) << "lpcm"
          << big<std::uint32_t>(kFloat | kLittleEndian);
    for (const std::uint32_t value : {4U, 1U, 1U, 32U}) file_ << big(value);
    file_ << "data" << big(~std::uint64_t{0}) << big<std::uint32_t>(0);
    if (!file_) throw zelvora::Error("PhoneRecording", 1, "can't write " + path.string());
  }

  void write(const zelvora::PcmBuffer& buffer) override {
    const auto samples = std::get<std::span<const float>>(buffer.samples);
    file_.write(reinterpret_cast<const char*>(samples.data()),
                static_cast<std::streamsize>(samples.size_bytes()));
    if (!file_) throw zelvora::Error("PhoneRecording", 2, "the recording can't be stored");
  }
  void flush() override { file_.flush(); }

 private:
  static constexpr std::uint32_t kFloat = 1;
  static constexpr std::uint32_t kLittleEndian = 2;

  /// The bytes of a number, the most significant first.
  template <class Number>
  static std::string big(Number number) {
    std::string bytes(sizeof number, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
      bytes[bytes.size() - 1 - i] = static_cast<char>(number >> (8 * i));
    return bytes;
  }

  std::ofstream file_;
};

class PhoneRecordings final : public zelvora::AudioFileFactory {
 public:
  std::unique_ptr<zelvora::AudioFileWriter> create(const std::filesystem::path& path,
                                                   const zelvora::AudioFormat& format) override {
    return std::make_unique<PhoneRecording>(path, format);
  }
};

/// Understands the same in any sound. A real one calls the handler from its own thread while sound
/// comes in, with confidence 0 until the end.
class PhoneRecognition final : public zelvora::SpeechRecognitionTask {
 public:
  explicit PhoneRecognition(zelvora::SpeechRecognizer::Handler handler)
      : handler_(std::move(handler)) {}

  void append(const zelvora::PcmBuffer&) override {
    if (!wasHeard_.exchange(true)) handler_.onResult({.text = "open", .segments = {}});
  }
  void endAudio() override {}
  std::optional<zelvora::SpeechResult> finish(zelvora::Seconds) override {
    if (!wasHeard_) return std::nullopt;
    return zelvora::SpeechResult{.text = "open my cart",
                                 .segments = {{"open", 0.9}, {"my", 0.8}, {"cart", 0.9}},
                                 .isFinal = true};
  }

 private:
  zelvora::SpeechRecognizer::Handler handler_;
  std::atomic<bool> wasHeard_ = false;  // sound and the end may come from two threads
};

class PhoneRecognizer final : public zelvora::SpeechRecognizer {
 public:
  [[nodiscard]] bool isAvailable() const override { return true; }
  std::unique_ptr<zelvora::SpeechRecognitionTask> startTask(bool, Handler handler) override {
    return std::make_unique<PhoneRecognition>(std::move(handler));
  }
};

class PhoneRecognizers final : public zelvora::SpeechRecognizerFactory {
 public:
  std::unique_ptr<zelvora::SpeechRecognizer> makeRecognizer(const std::string& locale) override {
    if (locale != "en-US") return nullptr;  // a locale that this phone does not understand
    return std::make_unique<PhoneRecognizer>();
  }
};

/// A real one shows the system's dialogues and remembers the answers.
class PhonePermissions final : public zelvora::Permissions {
 public:
  zelvora::asio::awaitable<SpeechStatus> requestSpeechRecognition() override {
    co_return SpeechStatus::authorized;
  }
  zelvora::asio::awaitable<bool> requestMicrophone() override { co_return true; }
};

/// Says texts into the log.
class PhoneVoice final : public zelvora::SpeechSynthesizer {
 public:
  void speak(zelvora::SpeechUtterance utterance) override {
    std::printf("(%s) %s\n", utterance.language.c_str(), utterance.text.c_str());
    if (utterance.onEnd) utterance.onEnd(true);
  }
  void stopSpeaking() override {}
};

class PhoneVoices final : public zelvora::SpeechSynthesizerFactory {
 public:
  std::unique_ptr<zelvora::SpeechSynthesizer> makeSynthesizer() override {
    return std::make_unique<PhoneVoice>();
  }
};

}  // namespace porting
