#include <ZelvoraSDK/adapters/speechd/private/session.h>

#include <boost/asio/buffer.hpp>
#include <boost/asio/write.hpp>
#include <string_view>
#include <utility>

#include <ZelvoraSDK/base/limits.h>

namespace zelvora::speechd {

Session::Session(const asio::any_io_executor& executor) : socket_(executor), farewell_(executor) {}

void Session::listen(OnEnd onEnd, OnBroken onBroken) {
  onEnd_ = std::move(onEnd);
  onBroken_ = std::move(onBroken);
}

void Session::begin(Socket socket) {
  socket_ = std::move(socket);
  perform(conversation_.begin());
  read();
}

void Session::close(std::function<void()> onClosed) {
  onEnd_ = nullptr;
  onBroken_ = nullptr;
  onClosed_ = std::move(onClosed);
  farewell_.expires_after(kMaxSpeechFarewell);
  farewell_.async_wait([self = shared_from_this()](const auto& cancelled) {
    if (!cancelled) self->hangUp();
  });
  perform(conversation_.close());
}

void Session::perform(const Actions& actions) {
  outgoing_ += actions.bytes;
  hangsUp_ = hangsUp_ || actions.hangUp;
  write();
  for (const Actions::End& end : actions.ended)
    if (const OnEnd onEnd = onEnd_) onEnd(end.number, end.said);
  if (actions.hangUp) breakOff();
}

void Session::read() {
  socket_.async_read_some(asio::buffer(received_),
                          [self = shared_from_this()](const auto& failed, std::size_t size) {
                            if (failed) return self->lose();
                            self->perform(self->conversation_.take({self->received_.data(), size}));
                            self->read();
                          });
}

void Session::write() {
  if (!onItsWay_.empty()) return;
  if (outgoing_.empty() || !socket_.is_open()) {
    if (hangsUp_) hangUp();
    return;
  }
  onItsWay_ = std::exchange(outgoing_, {});
  asio::async_write(socket_, asio::buffer(onItsWay_),
                    [self = shared_from_this()](const auto& failed, std::size_t) {
                      if (failed) return self->lose();
                      self->onItsWay_.clear();
                      self->write();
                    });
}

void Session::hangUp() {
  boost::system::error_code ignored;
  socket_.close(ignored);
  farewell_.cancel();
  if (const auto onClosed = std::exchange(onClosed_, nullptr)) onClosed();
}

void Session::breakOff() {
  onEnd_ = nullptr;
  if (const OnBroken onBroken = std::exchange(onBroken_, nullptr)) onBroken();
}

void Session::lose() {
  hangUp();
  breakOff();
}

}  // namespace zelvora::speechd
