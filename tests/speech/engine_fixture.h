#pragma once

#include <boost/asio/post.hpp>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/speech/endpointing.h>
#include <ZelvoraSDK/speech/speech_engine.h>
#include <ZelvoraSDK/testing/speech.h>

#include <tests/support/temporary_folder.h>

namespace zelvora::testing {

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

/// The stand-ins, threads to run on, and a folder for recordings.
struct SpeechLab {
  SpeechStandIns standIns;
  std::shared_ptr<ManualTime> time = std::make_shared<ManualTime>();
  TemporaryFolder folder;
  WorkerPool pool{2};

  [[nodiscard]] ZelvoraSpeechEngine::Parts engineParts() {
    return {.log = standIns.journal,
            .speech = standIns.platform(),
            .time = time,
            .temporaryDirectory = folder.path()};
  }
  [[nodiscard]] std::size_t recordingsLeft() const {
    const std::filesystem::directory_iterator entries(folder.path());
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
  }
};

}  // namespace zelvora::testing
