#include <ZelvoraSDK/async/threads.h>

#include <condition_variable>

#include <ZelvoraSDK/async/shared_loop.h>

namespace zelvora {

/// What the threads hold: it outlives the pool when a thread does.
struct WorkerPool::Shared {
  std::shared_ptr<SharedLoop> loop = std::make_shared<SharedLoop>(BOOST_ASIO_CONCURRENCY_HINT_SAFE);
  std::once_flag started;
  std::mutex mutex;
  std::condition_variable threadEnded;
  std::size_t running = 0;
  bool stopped = false;

  /// A thread's whole life. The last thread to end destroys what a stopped pool did not begin.
  void work() {
    loop->run();
    std::unique_lock lock(mutex);
    const bool isLast = --running == 0 && stopped;
    threadEnded.notify_all();
    lock.unlock();
    if (isLast) loop->drop();
  }
};

WorkerPool::WorkerPool(std::size_t threadCount)
    : shared_(std::make_shared<Shared>()), threadCount_(threadCount) {}

void WorkerPool::stop() {
  shared_->loop->close();
  // From here on no thread starts any more.
  std::call_once(shared_->started, [] {});
  const bool onOwnThread = shared_->loop->get_executor().running_in_this_thread();
  const std::size_t allowed = onOwnThread ? 1 : 0;
  std::unique_lock lock(shared_->mutex);
  const bool ended = shared_->threadEnded.wait_for(lock, kMaxJoinTime,
                                                   [&] { return shared_->running <= allowed; });
  const bool mustDrop = !std::exchange(shared_->stopped, true) && shared_->running == 0;
  lock.unlock();
  for (std::thread& thread : threads_) {
    // Joined, so that the thread's objects are destroyed first.
    if (ended && thread.get_id() != std::this_thread::get_id())
      thread.join();
    else
      thread.detach();
  }
  threads_.clear();
  if (mustDrop) shared_->loop->drop();
}

asio::any_io_executor WorkerPool::executor() {
  std::call_once(shared_->started, [this] { start(); });
  return shared_->loop->executor();
}

void WorkerPool::start() {
  const std::lock_guard lock(shared_->mutex);
  for (; shared_->running < threadCount_; ++shared_->running)
    threads_.emplace_back([shared = shared_] { shared->work(); });
}

}  // namespace zelvora
