#pragma once

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <ZelvoraSDK/adapters/curl/curl_url_session.h>
#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/network.h>

namespace zelvora {

/// One request on its way. Made by the caller, then used by the worker thread only.
class Transfer {
 public:
  using SteadyTime = std::chrono::steady_clock::time_point;

  /// Throws Error for a request that must not be sent.
  Transfer(UrlRequest request, const CurlOptions& options);

  /// Sets where the answer goes. Call it before the transfer starts.
  void replyTo(Reply<UrlResponse> reply) { reply_ = std::move(reply); }

  /// Sets up `easy`, a fresh or reset handle, for the request. `easy` borrows from this object
  /// until it is reset. Throws Error.
  void prepare(CURL* easy);

  /// After this time the answer is given up.
  [[nodiscard]] SteadyTime deadline() const { return deadline_; }

  /// Answers the caller with the transfer's result.
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

/// Carries all transfers of a session. `run` is for the worker thread; the rest is callable from
/// any thread.
class TransferLoop {
 public:
  TransferLoop();

  /// Every started transfer gets an answer, even after `close`.
  void start(const std::shared_ptr<Transfer>& transfer);
  /// Ends `transfer` with a failure unless it has been answered already.
  void cancel(const std::shared_ptr<Transfer>& transfer);
  /// Makes `run` fail what is under way and return.
  void close();

  void run();

 private:
  struct Letter {
    enum class Kind { start, cancel };
    Kind kind;
    std::shared_ptr<Transfer> transfer;
  };
  struct FreeEasy {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
  };
  struct FreeMulti {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
  };
  using Easy = std::unique_ptr<CURL, FreeEasy>;
  struct Active {
    std::shared_ptr<Transfer> transfer;
    Easy easy;
  };

  bool readMail();
  void begin(std::shared_ptr<Transfer> transfer);
  void abandon(const std::shared_ptr<Transfer>& transfer);
  void drive();
  void beginWaiting();
  void failWaitingPastDeadline();
  [[nodiscard]] int millisecondsToDeadline() const;
  bool finishTransfers();
  void failAll();
  Easy takeEasy();
  void giveBack(Easy easy);

  Mailbox<Letter> mailbox_;
  // Before the handles below, so that those are freed first.
  std::unique_ptr<CURLM, FreeMulti> multi_;
  std::vector<Easy> idle_;
  std::deque<std::shared_ptr<Transfer>> waiting_;
  std::unordered_map<const Transfer*, Active> active_;
};

}  // namespace zelvora
