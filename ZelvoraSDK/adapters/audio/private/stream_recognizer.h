#pragma once

#include <algorithm>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/async/serial_queue.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/speech.h>

namespace zelvora::audio {

/// A recogniser's engine with its models. Confined to one thread. An utterance is decoded
/// independently of earlier ones.
class StreamDecoder {
 public:
  virtual ~StreamDecoder() = default;

  /// Begins an utterance; `openedBy` says what its transcripts open. Drops an utterance that was
  /// not ended. Throws Error.
  virtual void begin(OpenedBy openedBy) = 0;
  /// Sound of `kModelRate`.
  virtual void hear(std::span<const std::int16_t> sound) = 0;
  /// What has been understood so far; no confidence is known yet.
  [[nodiscard]] virtual SpeechResult partialResult() const = 0;
  /// Ends the utterance. Without speech in it the result is empty.
  virtual SpeechResult end() = 0;
};

/// Loads a decoder, which takes some time. Throws Error when a model can't be read.
using LoadDecoder = std::function<std::unique_ptr<StreamDecoder>()>;

/// A decoder and its one thread. Callable from any thread, except `decoder`.
class DecoderThread : public std::enable_shared_from_this<DecoderThread> {
 public:
  explicit DecoderThread(LoadDecoder load) : load_(std::move(load)) {}

  [[nodiscard]] const SerialQueue& queue() const { return queue_; }

  /// Loads on the first call. REQUIRES: on the queue. Throws Error when a model can't be read.
  StreamDecoder& decoder() {
    if (!decoder_) decoder_ = load_();
    return *decoder_;
  }

  /// A failure surfaces when the decoder is used.
  void loadInBackground() {
    queue_.post([self = shared_from_this()] {
      try {
        self->decoder();
      } catch (const std::exception&) {
      }
    });
  }

  /// Throws Error while another owner has the decoder.
  void claim(const void* owner) {
    const bool isFree = owner_.with([=](const void*& current) {
      if (!current) current = owner;
      return current == owner;
    });
    if (!isFree)
      throw Error("ZelvoraSpeechRecognizer", 1, "Another speech recognition is still running");
  }

  /// Does nothing when `owner` has no claim. Work that it has posted still runs before the next
  /// owner's.
  void release(const void* owner) {
    owner_.with([=](const void*& current) {
      if (current == owner) current = nullptr;
    });
  }

 private:
  LoadDecoder load_;
  std::unique_ptr<StreamDecoder> decoder_;
  Guarded<const void*> owner_;
  WorkerPool thread_{1};
  SerialQueue queue_{"speech recogniser", thread_.executor()};
};

/// The decoders of a factory, one for each list of phrases that is in use. The last one asked for
/// is kept loaded until `release`, the others while they are held. Callable from any
/// thread.
class Decoders {
 public:
  using Phrases = std::vector<std::string>;
  using Load = std::function<std::unique_ptr<StreamDecoder>(const Phrases& phrases)>;

  /// `always` are phrases that every decoder expects.
  Decoders(Phrases always, Load load) : always_(std::move(always)), load_(std::move(load)) {}

  /// The decoder for `phrases`, which this does not load.
  std::shared_ptr<DecoderThread> expecting(const Phrases& phrases) {
    Phrases all = always_;
    for (const std::string& phrase : phrases)
      if (std::ranges::find(always_, phrase) == always_.end()) all.push_back(phrase);
    return state_
        .with([&](State& state) {
          std::erase_if(state.inUse, [](const auto& entry) { return entry.second.expired(); });
          auto& held = state.inUse[all];
          auto thread = held.lock();
          if (!thread) {
            thread = std::make_shared<DecoderThread>([load = load_, all] { return load(all); });
            held = thread;
          }
          // The previous one is destroyed outside the lock.
          auto before = std::exchange(state.latest, thread);
          return std::pair(std::move(thread), std::move(before));
        })
        .first;
  }

  /// The last one asked for; null before the first and after `release`.
  [[nodiscard]] std::shared_ptr<DecoderThread> latest() {
    return state_.with([](const State& state) { return state.latest; });
  }

  /// Destroys the decoder unless it is in use.
  void release() {
    // Outside the lock, because this may wait for a decoder's thread.
    const auto latest =
        state_.with([](State& state) { return std::exchange(state.latest, nullptr); });
  }

 private:
  struct State {
    std::map<Phrases, std::weak_ptr<DecoderThread>> inUse;
    std::shared_ptr<DecoderThread> latest;
  };

  const Phrases always_;
  const Load load_;
  Guarded<State> state_;
};

/// `locale` as recognisers compare it: "en_US" as "en-us".
[[nodiscard]] std::string plainLocale(const std::string& locale);

/// A recogniser on the decoder of `thread`; one task at a time. Callable from any thread.
[[nodiscard]] std::unique_ptr<SpeechRecognizer> streamRecognizer(
    std::shared_ptr<DecoderThread> thread, OpenedBy openedBy, std::function<bool()> isAvailable);

}  // namespace zelvora::audio
