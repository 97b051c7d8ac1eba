#include <ZelvoraSDK/adapters/curl/curl_url_session.h>

#include <utility>

#include <ZelvoraSDK/adapters/curl/private/transfer_loop.h>
#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/async/threads.h>

namespace zelvora {
namespace {

asio::awaitable<UrlResponse> answerTo(const std::shared_ptr<Transfer>& transfer,
                                      const std::shared_ptr<TransferLoop>& loop) {
  const auto start = [loop, transfer](Reply<UrlResponse> reply) {
    transfer->replyTo(std::move(reply));
    loop->start(transfer);
  };
  return awaitReply<UrlResponse>(start, [loop, transfer] { loop->cancel(transfer); });
}

// Not a member: the session may be gone before the answer comes.
asio::awaitable<UrlResponse> exchange(std::shared_ptr<TransferLoop> loop, UrlRequest request,
                                      CurlOptions options) {
  auto transfer = std::make_shared<Transfer>(std::move(request), options);
  co_return co_await answerTo(transfer, loop);
}

}  // namespace

CurlUrlSession::CurlUrlSession(CurlOptions options)
    : options_(std::move(options)),
      loop_(std::make_shared<TransferLoop>()),
      thread_(std::make_unique<BoundedThread>()) {}

CurlUrlSession::~CurlUrlSession() { loop_->close(); }

asio::awaitable<UrlResponse> CurlUrlSession::send(UrlRequest request) {
  thread_->startOnce([loop = loop_] { loop->run(); });
  return exchange(loop_, std::move(request), options_);
}

}  // namespace zelvora
