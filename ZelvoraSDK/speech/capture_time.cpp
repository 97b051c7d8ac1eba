#include <ZelvoraSDK/speech/capture_time.h>

#include <chrono>
#include <utility>

#include <ZelvoraSDK/async/serial_queue.h>

namespace zelvora {

Seconds SteadyTime::now() { return std::chrono::steady_clock::now().time_since_epoch(); }

std::shared_ptr<void> SteadyTime::startTicking(asio::any_io_executor executor, Seconds period,
                                               std::function<void()> tick) {
  return std::make_shared<RepeatingTimer>(
      executor, std::chrono::duration_cast<RepeatingTimer::Duration>(period), std::move(tick));
}

}  // namespace zelvora
