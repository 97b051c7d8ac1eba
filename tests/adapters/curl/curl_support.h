#pragma once

#include <future>
#include <optional>
#include <string>

#include <ZelvoraSDK/adapters/curl/curl_url_session.h>
#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/base/error.h>
#include <tests/support/scripted_server.h>

namespace zelvora::test {

/// Only the request itself may contain it.
inline constexpr char kSecret[] = "secret-token";

/// A POST of "ping" that carries the secret.
UrlRequest securedRequest(const std::string& url);

/// The result of a request: one of the two.
struct Outcome {
  std::optional<UrlResponse> response;
  std::optional<Error> error;

  /// libcurl's code, 0 with a response.
  [[nodiscard]] int code() const { return error ? error->code() : 0; }
};

/// Sends from a thread of `pool`.
std::future<Outcome> sendFrom(WorkerPool& pool, UrlSession& session, UrlRequest request);

/// The same, and waits. Fails the test when an error gives the secret away.
Outcome sendAndWait(WorkerPool& pool, UrlSession& session, UrlRequest request);

}  // namespace zelvora::test
