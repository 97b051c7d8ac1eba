#include <ZelvoraSDK/async/worker_pool.h>

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace zelvora {

/// What the threads hold: it outlives the pool when a thread does.
struct WorkerPool::Shared {
  asio::io_context context;
  asio::executor_work_guard<asio::io_context::executor_type> work{context.get_executor()};
  std::once_flag started;
  std::mutex mutex;
  std::condition_variable threadEnded;
  std::size_t running = 0;
};

WorkerPool::WorkerPool(std::size_t threadCount)
    : shared_(std::make_shared<Shared>()), threadCount_(threadCount) {}

void WorkerPool::stop() {
  shared_->context.stop();
  const bool onOwnThread = shared_->context.get_executor().running_in_this_thread();
  const std::size_t allowed = onOwnThread ? 1 : 0;
  std::unique_lock lock(shared_->mutex);
  const bool ended =
      shared_->threadEnded.wait_for(lock, kJoinBound, [&] { return shared_->running <= allowed; });
  lock.unlock();
  for (std::thread& thread : threads_) {
    // What a thread still holds is gone for good only when it is joined.
    if (ended && thread.get_id() != std::this_thread::get_id())
      thread.join();
    else
      thread.detach();
  }
  threads_.clear();
}

asio::any_io_executor WorkerPool::executor() {
  std::call_once(shared_->started, [this] { start(); });
  return shared_->context.get_executor();
}

void WorkerPool::start() {
  const std::lock_guard lock(shared_->mutex);
  for (; shared_->running < threadCount_; ++shared_->running) {
    threads_.emplace_back([shared = shared_] {
      shared->context.run();
      const std::lock_guard ending(shared->mutex);
      --shared->running;
      shared->threadEnded.notify_all();
    });
  }
}

}  // namespace zelvora
