#pragma once

#include <boost/asio/local/stream_protocol.hpp>
#include <boost/asio/steady_timer.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/speechd/private/conversation.h>
#include <ZelvoraSDK/async/coroutine.h>

namespace zelvora::speechd {

using Socket = asio::local::stream_protocol::socket;

/// Connects to the user's speech-dispatcher and starts one if none runs, which takes half a second.
/// Confined to its executor, which runs one thing at a time; no call waits.
class Dialling : public std::enable_shared_from_this<Dialling> {
 public:
  /// Called once, perhaps before `begin` returns; absent when no daemon can be reached.
  using OnConnected = std::function<void(std::optional<Socket> socket)>;

  Dialling(asio::any_io_executor executor, OnConnected onConnected);
  /// Ends a launcher that still runs.
  ~Dialling();
  Dialling(const Dialling&) = delete;
  Dialling& operator=(const Dialling&) = delete;

  /// REQUIRES: called once.
  void begin();
  /// Gives up: `onConnected` is not called after that.
  void cancel();

 private:
  enum class Attempt { connected, nobodyListens, failed };

  Attempt connect();
  void awaitLauncher();
  void finish(std::optional<Socket> socket);
  [[nodiscard]] bool launcherHasEnded();
  void endLauncher();

  OnConnected onConnected_;
  std::string path_;
  Socket socket_;
  asio::steady_timer timer_;
  std::chrono::steady_clock::time_point giveUpAt_;
  int launcher_ = -1;  ///< The process that puts the daemon into the background; -1: none.
};

/// The texts that have not ended. Each ends once: the caller that takes its handler calls it.
class PendingTexts {
 public:
  using Time = std::chrono::steady_clock::time_point;
  using OnEnd = std::function<void(bool said)>;

  struct Added {
    TextNumber number;
    Time deadline;  ///< A text that waits behind others has its time after theirs.
  };
  Added add(OnEnd onEnd, Time now, std::chrono::steady_clock::duration allowance) {
    const Time begin = texts_.empty() ? now : std::max(now, lastDeadline_);
    lastDeadline_ = begin + allowance;
    texts_.emplace(++lastNumber_, std::move(onEnd));
    return {lastNumber_, lastDeadline_};
  }

  [[nodiscard]] bool contains(TextNumber number) const { return texts_.contains(number); }

  /// Empty when it has ended before.
  OnEnd take(TextNumber number) {
    auto text = texts_.extract(number);
    return text ? std::move(text.mapped()) : OnEnd();
  }

  std::vector<OnEnd> takeAll() {
    std::vector<OnEnd> all;
    for (auto& [number, onEnd] : texts_) all.push_back(std::move(onEnd));
    texts_.clear();
    return all;
  }

 private:
  std::map<TextNumber, OnEnd> texts_;
  TextNumber lastNumber_ = 0;
  Time lastDeadline_{};
};

/// Moves the bytes of a conversation between it and the daemon. Confined to the socket's executor,
/// which runs one thing at a time; no call waits. May be closed inside its callbacks.
class Session : public std::enable_shared_from_this<Session> {
 public:
  /// Called when a text has been said (true), was cut short or refused.
  using OnEnd = std::function<void(TextNumber number, bool said)>;
  /// Called when the daemon is gone; texts that have not ended never will.
  using OnBroken = std::function<void()>;

  explicit Session(const asio::any_io_executor& executor);

  /// Texts may be given before; they wait. REQUIRES: called once, and a shared pointer holds this.
  void begin(Socket socket);
  void listen(OnEnd onEnd, OnBroken onBroken);

  void say(Text text) { perform(conversation_.say(std::move(text))); }
  /// Silences the current text and drops the waiting ones.
  void cancel() { perform(conversation_.cancel()); }
  void forget(TextNumber number) { conversation_.forget(number); }
  /// Silences and hangs up once everything is sent, at most `kMaxSpeechFarewell` later. Calls
  /// `onClosed` then, and nothing else after this.
  void close(std::function<void()> onClosed);

 private:
  void perform(const Actions& actions);
  void read();
  void write();
  void hangUp();
  void breakOff();
  void lose();

  Conversation conversation_;
  Socket socket_;
  asio::steady_timer farewell_;
  OnEnd onEnd_;
  OnBroken onBroken_;
  std::function<void()> onClosed_;
  std::array<char, 4096> received_{};
  std::string outgoing_;
  std::string onItsWay_;
  bool hangsUp_ = false;
};

}  // namespace zelvora::speechd
