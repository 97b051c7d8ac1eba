#pragma once

#include <array>
#include <boost/asio/steady_timer.hpp>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include <ZelvoraSDK/adapters/speechd/private/conversation.h>
#include <ZelvoraSDK/adapters/speechd/private/daemon.h>

namespace zelvora::speechd {

/// Moves the bytes of a conversation between it and the daemon. Confined to the socket's executor,
/// which runs one thing at a time; no call waits. May be closed inside its callbacks.
class Session : public std::enable_shared_from_this<Session> {
 public:
  /// Called when a text has been said (true), was cut short or refused.
  using OnEnd = std::function<void(TextNumber number, bool said)>;
  /// Called when the daemon is gone; texts that have not ended never will.
  using OnBroken = std::function<void()>;

  explicit Session(const asio::any_io_executor& executor);

  /// Texts may come before; they wait. REQUIRES, once: a shared pointer holds this.
  void begin(Socket socket);
  void listen(OnEnd onEnd, OnBroken onBroken);

  void say(Text text) { perform(conversation_.say(std::move(text))); }
  /// Silences what is being said and drops what waits.
  void cancel() { perform(conversation_.cancel()); }
  void forget(TextNumber number) { conversation_.forget(number); }
  /// Silences and hangs up, after what is on its way and at most `kMaxSpeechFarewell` later. Calls
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
