#include "offline_session.h"

#include <ZelvoraSDK/base/error.h>

namespace zelvora::tool {

asio::awaitable<UrlResponse> OfflineSession::send(UrlRequest /*request*/) {
  throw Error("ZelvoraTool", 1, "No network: the tool runs offline, so nothing was asked");
  co_return UrlResponse{};
}

}  // namespace zelvora::tool
