#include <ZelvoraSDK/platform/network.h>

#include <utility>

#include <ZelvoraSDK/async/awaitable.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

Awaitable<UrlResponse> refuse(std::string description) {
  throw Error("ZelvoraNoNetwork", 1, std::move(description));
  co_return UrlResponse{};
}

}  // namespace

NoNetworkSession::NoNetworkSession(std::string description)
    : description_(std::move(description)) {}

Awaitable<UrlResponse> NoNetworkSession::send(UrlRequest /*request*/) {
  return refuse(description_);
}

}  // namespace zelvora
