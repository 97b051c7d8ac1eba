#include <ZelvoraSDK/async/durable_queue.h>

#include <algorithm>
#include <boost/asio/post.hpp>
#include <condition_variable>
#include <cstddef>
#include <cstdlib>
#include <deque>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

#include <ZelvoraSDK/async/threads.h>

namespace zelvora {

class DurableQueue::Line {
 public:
  explicit Line(Threads threads) : threads_(std::move(threads)) {}

  [[nodiscard]] asio::any_io_executor threads() const { return threads_(); }

  /// True when nobody serves the line yet, so the caller must post a `Service`.
  bool push(std::unique_ptr<QueuedWork> work, bool isAccepted) {
    const std::lock_guard lock(mutex_);
    items_.push_back({std::move(work), isAccepted});
    return !std::exchange(isServed_, true);
  }

  /// Runs the first piece of work; returns false when the line is empty. Callable from any thread,
  /// since pieces never run at the same time.
  bool runNext();

  /// Called when nobody serves the line any more: keeps only accepted work.
  void lose() {
    std::vector<Item> dropped;
    const std::lock_guard lock(mutex_);
    isServed_ = false;
    const auto kept = std::ranges::stable_partition(items_, &Item::isAccepted).begin();
    std::ranges::move(kept, items_.end(), std::back_inserter(dropped));
    items_.erase(kept, items_.end());
  }

 private:
  struct Item {
    std::unique_ptr<QueuedWork> work;
    bool isAccepted = false;
  };

  Threads threads_;
  std::mutex mutex_;
  std::condition_variable runEnded_;
  std::deque<Item> items_;
  bool isServed_ = false;
  bool isRunning_ = false;
};

namespace {

template <class Line>
class Obligations {
 public:
  /// Never destroyed: work may be accepted until the very end.
  static Obligations& ofProcess() {
    static auto& obligations = *new Obligations;
    return obligations;
  }

  Obligations() {
    std::atexit([] { DurableQueue::finishAll(EndingWork::timeLeftAtExit()); });
  }

  void add(const std::shared_ptr<Line>& line) {
    const std::lock_guard lock(mutex_);
    ++accepted_[line];
  }
  void remove(const std::shared_ptr<Line>& line) {
    const std::lock_guard lock(mutex_);
    if (--accepted_[line] == 0) accepted_.erase(line);
    done_.notify_all();
  }

  std::vector<std::shared_ptr<Line>> lines() {
    const std::lock_guard lock(mutex_);
    std::vector<std::shared_ptr<Line>> lines;
    for (const auto& [line, count] : accepted_) lines.push_back(line);
    return lines;
  }

  bool waitUntilDone(std::chrono::milliseconds bound) {
    std::unique_lock lock(mutex_);
    return done_.wait_for(lock, bound, [this] { return accepted_.empty(); });
  }

 private:
  std::mutex mutex_;
  std::condition_variable done_;
  std::map<std::shared_ptr<Line>, std::size_t> accepted_;
};

}  // namespace

bool DurableQueue::Line::runNext() {
  std::unique_lock lock(mutex_);
  runEnded_.wait(lock, [this] { return !isRunning_; });
  if (items_.empty()) {
    isServed_ = false;
    return false;
  }
  Item item = std::move(items_.front());
  items_.pop_front();
  isRunning_ = true;
  lock.unlock();
  try {
    item.work->run();
  } catch (...) {
    // Nobody waits for the result, and the next piece must still run.
  }
  item.work.reset();
  lock.lock();
  isRunning_ = false;
  runEnded_.notify_all();
  return true;
}

/// Serves a line until it is empty. If it is destroyed without having run, it calls `lose()`.
class DurableQueue::Service {
 public:
  explicit Service(std::shared_ptr<Line> line) : line_(std::move(line)) {}
  Service(Service&&) noexcept = default;
  Service& operator=(Service&&) = delete;
  ~Service() {
    if (line_) line_->lose();
  }

  void operator()() {
    const auto line = std::exchange(line_, nullptr);
    while (line->runNext()) {
    }
  }

 private:
  std::shared_ptr<Line> line_;
};

DurableQueue::DurableQueue(Threads threads) : line_(std::make_shared<Line>(std::move(threads))) {}

void DurableQueue::add(const std::shared_ptr<Line>& line, std::unique_ptr<QueuedWork> work,
                       bool isAccepted) {
  if (line->push(std::move(work), isAccepted)) asio::post(line->threads(), Service(line));
}

void DurableQueue::accept(std::function<void()> work) const {
  auto& obligations = Obligations<Line>::ofProcess();
  obligations.add(line_);
  add(line_, QueuedWork::of([&obligations, line = line_, work = std::move(work)] {
        const std::shared_ptr<void> atEnd(nullptr, [&](void*) { obligations.remove(line); });
        work();
      }),
      true);
}

bool DurableQueue::finishAll(std::chrono::milliseconds bound) {
  auto& obligations = Obligations<Line>::ofProcess();
  std::vector<std::thread> helpers;
  for (const auto& line : obligations.lines())
    helpers.emplace_back([line] {
      while (line->runNext()) {
      }
    });
  const bool isDone = obligations.waitUntilDone(bound);
  for (std::thread& helper : helpers) {
    // Do not wait for a store that hangs.
    if (isDone)
      helper.join();
    else
      helper.detach();
  }
  return isDone;
}

}  // namespace zelvora
