#pragma once

#include <ZelvoraSDK/platform/network.h>

namespace zelvora::tool {

/// A network that is not there: every request fails at once.
class OfflineSession final : public UrlSession {
 public:
  asio::awaitable<UrlResponse> send(UrlRequest request) override;
};

}  // namespace zelvora::tool
