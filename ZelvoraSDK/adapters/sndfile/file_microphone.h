#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <filesystem>
#include <functional>
#include <memory>
#include <utility>

#include <ZelvoraSDK/async/awaitable_fwd.h>
#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform/audio.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// Spreads what a file holds over time. Callable from any thread.
class ZELVORA_EXPORT Pace {
 public:
  virtual ~Pace() = default;

  /// Calls `tick()` once every `period`, the first time after one, one call at a time, until the
  /// result is released; a call that has begun by then may still be running. Calls may also come
  /// before this returns.
  virtual std::shared_ptr<void> start(Seconds period, std::function<void()> tick) = 0;
};

/// Real time, on the threads of an executor. Late ticks are made up for, so that none is lost.
class ZELVORA_EXPORT RealTimePace final : public Pace {
 public:
  explicit RealTimePace(asio::any_io_executor threads) : threads_(std::move(threads)) {}
  std::shared_ptr<void> start(Seconds period, std::function<void()> tick) override;

 private:
  asio::any_io_executor threads_;
};

/// A sound file of any format that libsndfile reads, heard as if it were said into a microphone:
/// buffer by buffer at the file's own rate and in its channels, each capture from the start.
///
/// After its end comes silence until the capture is stopped, as after a speaker's last word: the
/// listener decides when the command has ended. The last buffer of the file is filled up with
/// silence. A damaged file ends the capture with an Error.
class ZELVORA_EXPORT FileMicrophone final : public AudioEngineFactory {
 public:
  /// Throws Error, of domain "ZelvoraAudioFile", when the file can't be read.
  FileMicrophone(std::filesystem::path file, std::shared_ptr<Pace> pace);
  std::unique_ptr<AudioEngine> makeEngine() override;

 private:
  std::filesystem::path file_;
  std::shared_ptr<Pace> pace_;
};

}  // namespace zelvora
