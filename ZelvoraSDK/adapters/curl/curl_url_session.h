#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform/network.h>

namespace zelvora {

class BoundedThread;
class TransferLoop;

/// The domain of transport failures; the code is libcurl's own.
inline constexpr char kCurlErrorDomain[] = "curl";

/// For tests; applications take the defaults.
struct CurlOptions {
  /// PEM certificates to trust beside the system's.
  std::optional<std::filesystem::path> extraAuthorities = std::nullopt;
  /// An upper limit for the time-out of every request.
  std::optional<Seconds> longestTimeout = std::nullopt;
};

/// Sends requests with libcurl on a worker thread of its own, which the first request starts.
/// Connections are kept for later requests; HTTP/2, proxy variables and the system's trust store
/// are used as found. Callable from any thread. The executors that its callers run on must outlive
/// it.
class ZELVORA_EXPORT CurlUrlSession final : public UrlSession {
 public:
  explicit CurlUrlSession(CurlOptions options = {});
  /// Requests in flight fail. Waits for the worker thread, with a bound.
  ~CurlUrlSession() override;

  Awaitable<UrlResponse> send(UrlRequest request) override;

 private:
  CurlOptions options_;
  std::shared_ptr<TransferLoop> loop_;
  std::unique_ptr<BoundedThread> thread_;
};

}  // namespace zelvora
