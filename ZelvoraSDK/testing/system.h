#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <ZelvoraSDK/async/awaitable_fwd.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora::testing {

/// A clock that the test moves.
class ManualClock final : public Clock {
 public:
  Timestamp now() override {
    const std::scoped_lock lock(mutex_);
    return now_;
  }
  void pass(Seconds duration) {
    const std::scoped_lock lock(mutex_);
    now_ += duration;
  }

 private:
  std::mutex mutex_;
  Timestamp now_{Seconds{1000}};
};

/// Keeps the lines.
class RecordingLog final : public LogSink {
 public:
  void write(std::string_view line) override {
    const std::scoped_lock lock(mutex_);
    lines_.emplace_back(line);
  }
  [[nodiscard]] std::vector<std::string> lines() const {
    const std::scoped_lock lock(mutex_);
    return lines_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

/// User defaults that live in memory and fail when the test says so.
class MemoryDefaults final : public UserDefaults {
 public:
  /// From now on every operation throws.
  void breakDown() {
    const std::scoped_lock lock(mutex_);
    isBroken_ = true;
  }
  void set(const std::string& key, std::int64_t value) {
    const std::scoped_lock lock(mutex_);
    values_[key] = value;
  }
  [[nodiscard]] std::map<std::string, std::int64_t> values() const {
    const std::scoped_lock lock(mutex_);
    return values_;
  }
  /// Operations so far, those that failed included.
  [[nodiscard]] int calls() const {
    const std::scoped_lock lock(mutex_);
    return calls_;
  }

  std::int64_t integer(const std::string& key) override {
    const std::scoped_lock lock(mutex_);
    begin();
    const auto at = values_.find(key);
    return at == values_.end() ? 0 : at->second;
  }
  std::int64_t increment(const std::string& key) override {
    const std::scoped_lock lock(mutex_);
    begin();
    std::int64_t& value = values_[key];
    return value = std::max(value, std::int64_t{0}) + 1;
  }
  void removeAll(const std::string& prefix) override {
    const std::scoped_lock lock(mutex_);
    begin();
    std::erase_if(values_, [&](const auto& entry) { return entry.first.starts_with(prefix); });
  }

 private:
  /// Counts an operation.
  void begin() {
    ++calls_;
    if (isBroken_) throw Error("Memory", 1, "the store is broken");
  }

  mutable std::mutex mutex_;
  std::map<std::string, std::int64_t> values_;
  bool isBroken_ = false;
  int calls_ = 0;
};

/// An application bundle put together by hand. Not to be changed while it is in use.
class MemoryBundle final : public AppBundle {
 public:
  std::map<std::string, std::filesystem::path> resources;  ///< By "name.extension".
  std::map<std::string, std::string> strings;
  std::map<std::string, double> numbers;
  std::optional<std::string> id;

  [[nodiscard]] std::optional<std::filesystem::path> resource(
      const std::string& name, const std::string& extension) const override {
    return valueIn(resources, name + '.' + extension);
  }
  [[nodiscard]] std::optional<std::string> stringSetting(const std::string& key) const override {
    return valueIn(strings, key);
  }
  [[nodiscard]] std::optional<double> numberSetting(const std::string& key) const override {
    return valueIn(numbers, key);
  }
  [[nodiscard]] std::optional<std::string> identifier() const override { return id; }
  [[nodiscard]] std::string description() const override { return "a bundle in memory"; }

 private:
  template <class Value>
  static std::optional<Value> valueIn(const std::map<std::string, Value>& map,
                                      const std::string& key) {
    const auto at = map.find(key);
    return at == map.end() ? std::nullopt : std::optional(at->second);
  }
};

/// The calls of a test's ports, counted, so that the test can step in at one of them: be slow,
/// fail by throwing an Error, release the caller.
class PortCalls {
 public:
  using Visit = std::function<void(std::size_t number, const std::string& call)>;

  /// Called before each call of a port, on its thread, with the call's number from 1 and its name.
  /// Null for nothing. Waits until the visit before is not running any more, so that one may use
  /// what the test owns; not to be called inside a visit.
  void onCall(Visit visit) {
    std::unique_lock lock(mutex_);
    visit_ = visit ? std::make_shared<const Visit>(std::move(visit)) : nullptr;
    visitEnded_.wait(lock, [this] { return visiting_ == 0; });
  }
  /// Calls `act` inside the `number`th call.
  void at(std::size_t number, std::function<void()> act) {
    onCall([number, act = std::move(act)](std::size_t now, const std::string& /*call*/) {
      if (now == number) act();
    });
  }
  /// For the stand-ins: throws what the visit throws.
  void enter(const std::string& call) {
    std::unique_lock lock(mutex_);
    const std::size_t number = ++count_;
    if (!visit_) return;
    ++visiting_;
    const std::shared_ptr<void> atEnd(nullptr, [this](void*) { endVisit(); });
    const auto visit = visit_;
    lock.unlock();
    (*visit)(number, call);
  }
  [[nodiscard]] std::size_t count() const {
    const std::lock_guard lock(mutex_);
    return count_;
  }

 private:
  void endVisit() {
    const std::lock_guard lock(mutex_);
    --visiting_;
    visitEnded_.notify_all();
  }

  mutable std::mutex mutex_;
  std::condition_variable visitEnded_;
  std::size_t count_ = 0;
  std::size_t visiting_ = 0;
  std::shared_ptr<const Visit> visit_;
};

/// What happened, in order.
class Journal final : public LogSink {
 public:
  PortCalls calls;

  void note(std::string line) {
    const std::lock_guard lock(mutex_);
    lines_.push_back(std::move(line));
  }
  void write(std::string_view line) override { note(std::string(line)); }

  /// Everything since the last call.
  std::vector<std::string> take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(lines_, {});
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> lines_;
};

/// Looks once a millisecond, on the loop, while it is held: work that throws ends
/// `run()` while a look is still to come.
template <class Loop>
class Watch : public std::enable_shared_from_this<Watch<Loop>> {
 public:
  Watch(Loop& loop, std::function<bool()> isDone, std::chrono::seconds bound)
      : loop_(loop), isDone_(std::move(isDone)), timer_(loop.executor()), end_(now() + bound) {}

  void begin() {
    asio::post(loop_.executor(), [weak = this->weak_from_this()] {
      if (const auto watch = weak.lock()) watch->look();
    });
  }
  [[nodiscard]] bool isDone() const { return done_; }

 private:
  static std::chrono::steady_clock::time_point now() { return std::chrono::steady_clock::now(); }

  void look() {
    done_ = isDone_();
    if (done_ || now() > end_) return loop_.stop();
    timer_.expires_after(std::chrono::milliseconds(1));
    timer_.async_wait([weak = this->weak_from_this()](const boost::system::error_code& error) {
      const auto watch = weak.lock();
      if (watch && !error) watch->look();
    });
  }

  Loop& loop_;
  std::function<bool()> isDone_;
  asio::steady_timer timer_;
  std::chrono::steady_clock::time_point end_;
  bool done_ = false;
};

/// Runs `loop`, a `MainLoop` or what has its face, until `isDone()`, at most `bound`; whether it is
/// done. `isDone` is asked on the loop, once a millisecond. What work throws goes through.
template <class Loop>
bool runUntil(Loop& loop, const std::function<bool()>& isDone,
              std::chrono::seconds bound = std::chrono::seconds(10)) {
  const auto watch = std::make_shared<Watch<Loop>>(loop, isDone, bound);
  watch->begin();
  loop.run();
  return watch->isDone();
}

}  // namespace zelvora::testing
