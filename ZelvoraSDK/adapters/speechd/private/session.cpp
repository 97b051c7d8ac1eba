#include <ZelvoraSDK/adapters/speechd/private/session.h>

#include <boost/asio/buffer.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/write.hpp>
#include <string_view>
#include <utility>

#include <ZelvoraSDK/base/limits.h>

namespace zelvora::speechd {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr const char* kCancel = "CANCEL SELF\r\n";

}  // namespace

Session::Session(Socket socket, OnEnd onEnd, OnBroken onBroken)
    : socket_(std::move(socket)), onEnd_(std::move(onEnd)), onBroken_(std::move(onBroken)) {}

void Session::begin() {
  add("SET SELF CLIENT_NAME unknown:zelvora:main\r\n");
  add("SET SELF PRIORITY MESSAGE\r\n");
  add("SET SELF NOTIFICATION END ON\r\n");
  add("SET SELF NOTIFICATION CANCEL ON\r\n");
  readLine();
}

void Session::say(TextNumber number, const SpeechUtterance& utterance) {
  // A language without a voice is spoken in the default one.
  const std::string language = languageCode(utterance.language);
  if (!language.empty()) add("SET SELF LANGUAGE " + language + "\r\n");
  add("SET SELF RATE " + std::to_string(voiceRate(utterance.rate)) + "\r\n");
  add("SPEAK\r\n", [this, number, text = utterance.text](const Answer& answer) {
    sendText(number, text, answer);
  });
}

void Session::cancel() {
  // What waits behind the command on its way has not been said to the daemon.
  if (steps_.size() > (waiting_ ? 1U : 0U)) steps_.resize(waiting_ ? 1 : 0);
  add(kCancel);
}

void Session::close() {
  onEnd_ = nullptr;
  onBroken_ = nullptr;
  steps_.clear();
  boost::system::error_code ignored;
  socket_.write_some(asio::buffer(std::string_view(kCancel)), ignored);
  socket_.close(ignored);
}

void Session::add(std::string command, std::function<void(const Answer&)> onAnswer) {
  steps_.push_back({std::move(command), std::move(onAnswer)});
  sendNext();
}

void Session::sendNext() {
  if (waiting_ || steps_.empty()) return;
  waiting_ = true;
  const auto command = std::make_shared<const std::string>(std::move(steps_.front().command));
  asio::async_write(socket_, asio::buffer(*command),
                    [self = shared_from_this(), command](const auto& failed, std::size_t) {
                      if (failed) self->breakOff();
                    });
}

void Session::takeAnswer(const Answer& answer) {
  if (!waiting_) return;
  const Step step = std::move(steps_.front());
  steps_.pop_front();
  waiting_ = false;
  if (step.onAnswer) step.onAnswer(answer);
  sendNext();
}

void Session::sendText(TextNumber number, const std::string& text, const Answer& answer) {
  if (answer.code != kReceivingText) {
    if (onEnd_) onEnd_(number, false);
    return;
  }
  // Before all that waits: the daemon takes nothing else now.
  steps_.push_front(
      {textBlock(text), [this, number](const Answer& outcome) { noteQueued(number, outcome); }});
}

void Session::noteQueued(TextNumber number, const Answer& answer) {
  const bool isQueued = answer.code == kTextQueued && !answer.values.empty();
  const auto early =
      isQueued ? endedEarly_.extract(answer.values[0]) : decltype(endedEarly_)::node_type();
  if (isQueued && !early)
    queued_[answer.values[0]] = number;
  else if (onEnd_)
    onEnd_(number, early && early.mapped());
}

void Session::takeNotice(const Answer& notice) {
  if (notice.values.empty() || (notice.code != kTextSaid && notice.code != kTextCut)) return;
  const bool said = notice.code == kTextSaid;
  const auto text = queued_.extract(notice.values[0]);
  if (!text)
    endedEarly_[notice.values[0]] = said;
  else if (onEnd_)
    onEnd_(text.mapped(), said);
}

void Session::readLine() {
  asio::async_read_until(socket_, asio::dynamic_buffer(received_, kMaxSpeechReplyLineBytes),
                         kLineEnd,
                         [self = shared_from_this()](const auto& failed, std::size_t size) {
                           if (failed) return self->breakOff();
                           self->takeLine(size);
                           self->readLine();
                         });
}

void Session::takeLine(std::size_t size) {
  const auto answer = reader_.take(std::string_view(received_).substr(0, size - kLineEnd.size()));
  received_.erase(0, size);
  if (!answer) return;
  if (answer->isNotice())
    takeNotice(*answer);
  else
    takeAnswer(*answer);
}

void Session::breakOff() {
  if (const auto onBroken = std::exchange(onBroken_, nullptr)) onBroken();
}

}  // namespace zelvora::speechd
