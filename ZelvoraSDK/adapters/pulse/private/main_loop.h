#pragma once

#include <pulse/context.h>
#include <pulse/stream.h>
#include <pulse/thread-mainloop.h>

#include <chrono>
#include <memory>
#include <string>

#include <ZelvoraSDK/base/error.h>

namespace zelvora::pulse {

/// `what` went wrong and the sound server's reason; `code` is one of libpulse's.
Error failure(int code, const std::string& what);

/// libpulse's own thread. Every callback of the library runs there with the lock held, and every
/// call from elsewhere takes it first.
class ThreadedLoop {
 public:
  /// Throws Error when no thread can be started.
  ThreadedLoop();
  ~ThreadedLoop();
  ThreadedLoop(const ThreadedLoop&) = delete;
  ThreadedLoop& operator=(const ThreadedLoop&) = delete;

  /// Holds the lock, which keeps the thread out. Never taken on the thread itself.
  class Lock {
   public:
    explicit Lock(const ThreadedLoop& loop) : loop_(loop.loop_) {
      pa_threaded_mainloop_lock(loop_);
    }
    ~Lock() { pa_threaded_mainloop_unlock(loop_); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

   private:
    pa_threaded_mainloop* loop_;
  };

  [[nodiscard]] pa_mainloop_api* api() const { return pa_threaded_mainloop_get_api(loop_); }

  /// Wakes the thread inside `waitUntil`. For callbacks.
  void wake() const { pa_threaded_mainloop_signal(loop_, 0); }

  /// Lets the thread work until `done()`, for at most `limit`. Returns whether it is done.
  /// REQUIRES: the lock.
  template <class Done>
  bool waitUntil(pa_context* context, std::chrono::microseconds limit, Done done) const {
    const Alarm alarm(*this, context, limit);
    while (!done() && !alarm.rang()) pa_threaded_mainloop_wait(loop_);
    return done();
  }

 private:
  /// Wakes the waiter when the time is up, so that no server can block it forever.
  class Alarm {
   public:
    Alarm(const ThreadedLoop& loop, pa_context* context, std::chrono::microseconds limit);
    ~Alarm();
    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;
    [[nodiscard]] bool rang() const { return rang_; }

   private:
    const ThreadedLoop& loop_;
    pa_time_event* event_;
    bool rang_ = false;
  };

  pa_threaded_mainloop* loop_;
};

struct CloseContext {
  void operator()(pa_context* context) const;
};
struct CloseStream {
  void operator()(pa_stream* stream) const;
};
struct DropOperation {
  void operator()(pa_operation* operation) const;
};
/// All three are made and destroyed with the lock held; nothing calls back after that.
using Context = std::unique_ptr<pa_context, CloseContext>;
using Stream = std::unique_ptr<pa_stream, CloseStream>;
using Operation = std::unique_ptr<pa_operation, DropOperation>;

/// A context under this application's name, not yet connected. REQUIRES: the lock.
Context newContext(const ThreadedLoop& loop);
/// Begins to connect, to a server that runs already. REQUIRES: the lock.
bool beginConnecting(pa_context* context);

}  // namespace zelvora::pulse
