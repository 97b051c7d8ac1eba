#pragma once

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/experimental/concurrent_channel.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/network.h>

namespace zelvora::testing {

/// A session without a network: records each request and answers when the test says so, in the
/// order of the requests. Callable from any thread.
class RecordingUrlSession final : public UrlSession {
 public:
  /// Answers the next request that has no answer yet; may be called before it comes.
  void answer(int status, std::string body) { give(UrlResponse{status, std::move(body)}); }
  void answerWithoutHttp() { give(UrlResponse{}); }
  void fail(Error failure) { give(std::move(failure)); }

  [[nodiscard]] std::vector<UrlRequest> requests() const {
    const std::lock_guard lock(state_->mutex);
    return state_->requests;
  }

  /// Waits until `count` requests have come; false when they don't come in half a minute.
  [[nodiscard]] bool waitForRequests(std::size_t count) const {
    std::unique_lock lock(state_->mutex);
    return state_->changed.wait_for(lock, std::chrono::seconds(30),
                                    [&] { return state_->requests.size() >= count; });
  }

  asio::awaitable<UrlResponse> send(UrlRequest request) override {
    return record(state_, std::move(request));
  }

 private:
  using Reply = std::variant<UrlResponse, Error>;

  struct State {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<UrlRequest> requests;
    asio::io_context owner;  ///< Of the channel alone; nobody runs it.
    asio::experimental::concurrent_channel<asio::any_io_executor,
                                           void(boost::system::error_code, Reply)>
        replies{owner, 4096};
  };

  void give(Reply reply) {
    state_->replies.try_send(boost::system::error_code(), std::move(reply));
  }

  static asio::awaitable<UrlResponse> record(std::shared_ptr<State> state, UrlRequest request) {
    {
      const std::lock_guard lock(state->mutex);
      state->requests.push_back(std::move(request));
    }
    state->changed.notify_all();
    auto [error, reply] =
        co_await state->replies.async_receive(asio::as_tuple(asio::use_awaitable));
    if (error) throw Error("RecordingUrlSession", error.value(), "The request was given up");
    if (auto* failure = std::get_if<Error>(&reply)) throw *failure;
    co_return std::get<UrlResponse>(std::move(reply));
  }

  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace zelvora::testing
