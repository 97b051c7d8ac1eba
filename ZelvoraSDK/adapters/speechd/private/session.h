#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include <ZelvoraSDK/adapters/speechd/private/daemon.h>
#include <ZelvoraSDK/adapters/speechd/private/pending_texts.h>
#include <ZelvoraSDK/adapters/speechd/private/protocol.h>
#include <ZelvoraSDK/platform/speech.h>

namespace zelvora::speechd {

/// A conversation with speech-dispatcher. Confined to the socket's executor, which runs one thing
/// at a time; no call waits.
class Session : public std::enable_shared_from_this<Session> {
 public:
  /// Told when a text has been said (true), was cut short or refused. Told of texts that the owner
  /// has given up, too.
  using OnEnd = std::function<void(TextNumber number, bool said)>;
  /// Told when the daemon is gone; texts that have not ended never will.
  using OnBroken = std::function<void()>;

  Session(Socket socket, OnEnd onEnd, OnBroken onBroken);

  /// REQUIRES, once and first: a shared pointer holds this.
  void begin();
  void say(TextNumber number, const SpeechUtterance& utterance);
  /// Silences what is being said and drops what waits.
  void cancel();
  /// Silences and ends the conversation; nothing is told after that.
  void close();

 private:
  /// A command and what its answer leads to.
  struct Step {
    std::string command;
    std::function<void(const Answer& answer)> onAnswer;
  };

  void add(std::string command, std::function<void(const Answer&)> onAnswer = {});
  void sendNext();
  void takeAnswer(const Answer& answer);
  void takeNotice(const Answer& notice);
  void sendText(TextNumber number, const std::string& text, const Answer& answer);
  void noteQueued(TextNumber number, const Answer& answer);
  void readLine();
  void takeLine(std::size_t size);
  void breakOff();

  Socket socket_;
  OnEnd onEnd_;
  OnBroken onBroken_;
  std::string received_;
  AnswerReader reader_;
  std::deque<Step> steps_;  ///< The first one is on its way when `waiting_`.
  bool waiting_ = false;
  std::map<std::string, TextNumber> queued_;  ///< By the number that the daemon gave.
  std::map<std::string, bool> endedEarly_;    ///< Notices that came before that number.
};

}  // namespace zelvora::speechd
