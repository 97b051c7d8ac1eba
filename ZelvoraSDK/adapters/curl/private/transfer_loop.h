#pragma once

#include <curl/curl.h>

#include <deque>
#include <memory>
#include <unordered_map>
#include <vector>

#include <ZelvoraSDK/adapters/curl/private/transfer.h>
#include <ZelvoraSDK/async/guarded.h>

namespace zelvora {

/// Carries all transfers of a session. `run` is the worker thread's; the rest is callable from any
/// thread.
class TransferLoop {
 public:
  TransferLoop();

  /// Every transfer that is started is answered, also after `close`.
  void start(const std::shared_ptr<Transfer>& transfer);
  /// Ends `transfer` with a failure unless it has been answered already.
  void cancel(const std::shared_ptr<Transfer>& transfer);
  /// Lets `run` fail what is under way and return.
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
  // Ahead of the handles below, which are freed first.
  std::unique_ptr<CURLM, FreeMulti> multi_;
  std::vector<Easy> idle_;
  std::deque<std::shared_ptr<Transfer>> waiting_;
  std::unordered_map<const Transfer*, Active> active_;
};

}  // namespace zelvora
