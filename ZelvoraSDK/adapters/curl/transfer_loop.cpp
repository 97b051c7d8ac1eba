#include <ZelvoraSDK/adapters/curl/private/transfer_loop.h>

#include <signal.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <new>
#include <utility>

#include <ZelvoraSDK/adapters/curl/private/curl_failure.h>
#include <ZelvoraSDK/base/limits.h>

namespace zelvora {
namespace {

void initialiseLibrary() {
  // Never undone: other parts of the application may use libcurl too.
  static const CURLcode code = curl_global_init(CURL_GLOBAL_DEFAULT);
  if (code != CURLE_OK) throw curlFailure(code, "");
}

/// They are the application's, on its own threads. Writing to a connection that is gone raises one
/// too, which would end the process.
void blockSignals() {
  sigset_t all;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

CURLM* newMulti() {
  initialiseLibrary();
  CURLM* const multi = curl_multi_init();
  if (multi == nullptr) throw std::bad_alloc();
  return multi;
}

}  // namespace

TransferLoop::TransferLoop() : multi_(newMulti()) {}

void TransferLoop::start(const std::shared_ptr<Transfer>& transfer) {
  if (mailbox_.post({Letter::Kind::start, transfer}))
    curl_multi_wakeup(multi_.get());
  else
    transfer->fail(sessionClosed());
}

void TransferLoop::cancel(const std::shared_ptr<Transfer>& transfer) {
  if (mailbox_.post({Letter::Kind::cancel, transfer})) curl_multi_wakeup(multi_.get());
}

void TransferLoop::close() {
  mailbox_.close();
  curl_multi_wakeup(multi_.get());
}

void TransferLoop::run() {
  blockSignals();
  while (readMail()) drive();
  failAll();
}

/// False when the session is closed.
bool TransferLoop::readMail() {
  auto delivery = mailbox_.take();
  for (Letter& letter : delivery.letters) {
    if (letter.kind == Letter::Kind::start)
      waiting_.push_back(std::move(letter.transfer));
    else
      abandon(letter.transfer);
  }
  return !delivery.last;
}

void TransferLoop::drive() {
  failWaitingPastDeadline();
  int running = 0;
  do {  // What has finished makes room for what waits.
    beginWaiting();
    curl_multi_perform(multi_.get(), &running);
  } while (finishTransfers() && !waiting_.empty());
  curl_multi_poll(multi_.get(), nullptr, 0, millisecondsToDeadline(), nullptr);
}

void TransferLoop::failWaitingPastDeadline() {
  const auto now = Transfer::SteadyTime::clock::now();
  std::erase_if(waiting_, [&](const std::shared_ptr<Transfer>& transfer) {
    const bool late = transfer->deadline() <= now;
    if (late) transfer->fail(curlFailure(CURLE_OPERATION_TIMEDOUT, ""));
    return late;
  });
}

/// Until the first of what waits is late; libcurl sees to what is under way itself.
int TransferLoop::millisecondsToDeadline() const {
  auto nearest = std::chrono::milliseconds(std::numeric_limits<int>::max());
  const auto now = Transfer::SteadyTime::clock::now();
  for (const auto& transfer : waiting_)
    nearest =
        std::min(nearest, std::chrono::ceil<std::chrono::milliseconds>(transfer->deadline() - now));
  return static_cast<int>(std::max(nearest, std::chrono::milliseconds(0)).count());
}

void TransferLoop::beginWaiting() {
  // libcurl's own limit of connections forgets waiting ones now and then.
  while (!waiting_.empty() && active_.size() < kMaxActiveTransfers) {
    auto transfer = std::move(waiting_.front());
    waiting_.pop_front();
    begin(std::move(transfer));
  }
}

void TransferLoop::begin(std::shared_ptr<Transfer> transfer) {
  try {
    Easy easy = takeEasy();
    transfer->prepare(easy.get());
    const CURLMcode code = curl_multi_add_handle(multi_.get(), easy.get());
    if (code != CURLM_OK) throw curlFailure(CURLE_FAILED_INIT, curl_multi_strerror(code));
    const Transfer* const key = transfer.get();
    active_.insert_or_assign(key, Active{std::move(transfer), std::move(easy)});
  } catch (const Error& error) {
    transfer->fail(error);
  }
}

void TransferLoop::abandon(const std::shared_ptr<Transfer>& transfer) {
  if (const auto found = active_.find(transfer.get()); found != active_.end()) {
    curl_multi_remove_handle(multi_.get(), found->second.easy.get());
    active_.erase(found);
  } else if (std::erase(waiting_, transfer) == 0) {
    return;
  }
  transfer->fail(transferCancelled());
}

/// Whether there was any.
bool TransferLoop::finishTransfers() {
  bool any = false;
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_.get(), &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    const CURLcode result = message->data.result;  // The message dies with its handle's removal.
    Transfer* transfer = nullptr;
    curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
    const auto found = active_.find(transfer);
    Active active = std::move(found->second);
    active_.erase(found);
    // The caller first: what is left to do need not keep it waiting.
    active.transfer->finish(active.easy.get(), result);
    curl_multi_remove_handle(multi_.get(), active.easy.get());
    giveBack(std::move(active.easy));
    any = true;
  }
  return any;
}

void TransferLoop::failAll() {
  for (const auto& transfer : std::exchange(waiting_, {})) transfer->fail(sessionClosed());
  for (auto& [key, active] : std::exchange(active_, {})) {
    curl_multi_remove_handle(multi_.get(), active.easy.get());
    active.transfer->fail(sessionClosed());
  }
}

TransferLoop::Easy TransferLoop::takeEasy() {
  if (!idle_.empty()) {
    Easy easy = std::move(idle_.back());
    idle_.pop_back();
    return easy;
  }
  Easy easy(curl_easy_init());
  if (!easy) throw curlFailure(CURLE_OUT_OF_MEMORY, "");
  return easy;
}

void TransferLoop::giveBack(Easy easy) {
  if (idle_.size() >= kMaxIdleHandles) return;
  curl_easy_reset(easy.get());
  idle_.push_back(std::move(easy));
}

}  // namespace zelvora
