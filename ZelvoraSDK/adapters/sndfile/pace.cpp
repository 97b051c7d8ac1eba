#include <ZelvoraSDK/adapters/sndfile/pace.h>

#include <boost/asio/post.hpp>
#include <chrono>
#include <memory>
#include <utility>

#include <ZelvoraSDK/async/serial_queue.h>

namespace zelvora {

std::shared_ptr<void> RealTimePace::start(Seconds period, std::function<void()> tick) {
  const asio::any_io_executor strand = SerialExecutor::on(threads_);
  const auto every = std::chrono::duration_cast<RepeatingTimer::Duration>(period);
  // The timer lives on its strand alone: made there, and destroyed there on behalf of the answer.
  const auto timer = std::make_shared<std::unique_ptr<RepeatingTimer>>();
  asio::post(strand, [strand, every, timer, tick = std::move(tick)] {
    *timer = std::make_unique<RepeatingTimer>(strand, every, tick);
  });
  return {nullptr, [strand, timer](void*) { asio::post(strand, [timer] { timer->reset(); }); }};
}

}  // namespace zelvora
