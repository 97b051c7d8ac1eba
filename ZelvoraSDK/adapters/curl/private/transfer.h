#pragma once

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <memory>
#include <string>

#include <ZelvoraSDK/adapters/curl/curl_url_session.h>
#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/platform/url.h>

namespace zelvora {

/// One request on its way. Made by the caller, then left to the worker thread alone.
class Transfer {
 public:
  using SteadyTime = std::chrono::steady_clock::time_point;

  /// Throws Error for a request that must not be sent.
  Transfer(UrlRequest request, const CurlOptions& options);

  /// Where the answer goes; to be called before the transfer starts.
  void replyTo(Reply<UrlResponse> reply) { reply_ = std::move(reply); }

  /// Tells `easy`, a fresh or reset handle, all about the request. `easy` borrows from this object
  /// until it is reset. Throws Error.
  void prepare(CURL* easy);

  /// Past it nobody waits for the answer any more.
  [[nodiscard]] SteadyTime deadline() const { return deadline_; }

  /// Answers the caller by what libcurl made of the transfer.
  void finish(CURL* easy, CURLcode result);
  /// Answers the caller with a failure.
  void fail(const Error& error);

 private:
  struct FreeHeaders {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
  };

  static std::size_t receive(char* bytes, std::size_t size, std::size_t count, void* self);
  static std::size_t receiveHeader(char* bytes, std::size_t size, std::size_t count, void* self);

  void prepareConnection(CURL* easy);
  void prepareContent(CURL* easy);
  void addHeader(const std::string& line);

  UrlRequest request_;
  Url url_;
  std::string address_;
  SteadyTime deadline_;
  std::string authorities_;
  std::unique_ptr<curl_slist, FreeHeaders> headers_;
  Reply<UrlResponse> reply_;
  std::string body_;
  bool tooLarge_ = false;
  bool headersEnded_ = false;
  std::array<char, CURL_ERROR_SIZE> detail_{};
};

}  // namespace zelvora
