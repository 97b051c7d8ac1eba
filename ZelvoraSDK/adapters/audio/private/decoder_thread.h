#pragma once

#include <exception>
#include <memory>
#include <utility>

#include <ZelvoraSDK/adapters/audio/private/stream_decoder.h>
#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/async/serial_queue.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora::audio {

/// A decoder and the one thread that it lives on. Callable from any thread, except `decoder`.
class DecoderThread : public std::enable_shared_from_this<DecoderThread> {
 public:
  explicit DecoderThread(LoadDecoder load) : load_(std::move(load)) {}

  [[nodiscard]] const SerialQueue& queue() const { return queue_; }

  /// Loads on the first call. REQUIRES: on the queue. Throws Error when a model can't be read.
  StreamDecoder& decoder() {
    if (!decoder_) decoder_ = load_();
    return *decoder_;
  }

  /// A failure shows when the decoder is used.
  void loadInBackground() {
    queue_.post([self = shared_from_this()] {
      try {
        self->decoder();
      } catch (const std::exception&) {
      }
    });
  }

  /// Throws Error while another one has the decoder.
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

}  // namespace zelvora::audio
