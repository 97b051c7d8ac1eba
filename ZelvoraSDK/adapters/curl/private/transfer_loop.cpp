#include <ZelvoraSDK/adapters/curl/private/transfer_loop.h>

#include <signal.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include <ZelvoraSDK/adapters/curl/curl_url_session.h>
#include <ZelvoraSDK/base/limits.h>

namespace zelvora {
namespace {

/// A sentence for the failures that every user meets; nullptr for the others.
const char* plainSentence(CURLcode code) {
  switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST: return "The server could not be found.";
    case CURLE_COULDNT_RESOLVE_PROXY: return "The proxy could not be found.";
    case CURLE_COULDNT_CONNECT: return "Could not connect to the server.";
    case CURLE_OPERATION_TIMEDOUT: return "The request timed out.";
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR: return "The connection to the server was lost.";
    case CURLE_PARTIAL_FILE: return "The server's answer was cut short.";
    default: return nullptr;
  }
}

/// The Error for libcurl's `code`. `detail` is what libcurl wrote about this transfer, or "".
Error curlFailure(CURLcode code, const char* detail) {
  const char* text = plainSentence(code);
  if (text == nullptr) text = *detail != '\0' ? detail : curl_easy_strerror(code);
  return Error(kCurlErrorDomain, code, text);
}

Error responseTooLarge() {
  constexpr std::size_t kMebibyte = 1 << 20;
  const std::string limit = std::to_string(kMaxResponseBytes / kMebibyte);
  return Error(kCurlErrorDomain, CURLE_FILESIZE_EXCEEDED,
               "The server's answer is larger than " + limit + " MiB.");
}

Error transferCancelled() {
  return Error(kCurlErrorDomain, CURLE_ABORTED_BY_CALLBACK, "The request was cancelled.");
}

Error sessionClosed() {
  return Error(kCurlErrorDomain, CURLE_ABORTED_BY_CALLBACK, "The session was closed.");
}

template <class Value>
void set(CURL* easy, CURLoption option, Value value) {
  const CURLcode code = curl_easy_setopt(easy, option, value);
  if (code != CURLE_OK) throw curlFailure(code, "");
}

bool isToken(std::string_view text) {
  constexpr std::string_view kSigns = "!#$%&'*+-.^_`|~";
  return !text.empty() && std::ranges::all_of(text, [&](char c) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return letter || (c >= '0' && c <= '9') || kSigns.find(c) != kSigns.npos;
  });
}

/// A line break in a value would let it add headers.
bool isHeaderValue(std::string_view text) {
  return std::ranges::none_of(text, [](char c) {
    return (static_cast<unsigned char>(c) < ' ' && c != '\t') || c == '\x7f';
  });
}

void requireSendable(const UrlRequest& request) {
  const auto sendable = [](const UrlHeader& header) {
    return isToken(header.name) && isHeaderValue(header.value);
  };
  // The header is not named: its value may be a secret.
  if (!isToken(request.method) || !std::ranges::all_of(request.headers, sendable))
    throw Error(kCurlErrorDomain, CURLE_BAD_FUNCTION_ARGUMENT,
                "The request has a header that can't be sent.");
}

/// A century at most, which every clock can hold.
std::chrono::nanoseconds bounded(Seconds timeout) {
  constexpr Seconds kMaxSeconds{100.0 * 365 * 24 * 60 * 60};
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
      std::clamp(timeout, Seconds{0}, kMaxSeconds));
}

/// At least 1: for libcurl 0 means no limit.
long millisecondsUntil(Transfer::SteadyTime deadline) {
  constexpr long kMaxLong = std::numeric_limits<int>::max();
  const auto left = deadline - Transfer::SteadyTime::clock::now();
  return std::clamp(long{std::chrono::ceil<std::chrono::milliseconds>(left).count()}, 1L, kMaxLong);
}

}  // namespace

Transfer::Transfer(UrlRequest request, const CurlOptions& options)
    : request_(std::move(request)), url_(parseUrl(request_.url)), address_(toString(url_)) {
  requireSecure(url_);
  requireSendable(request_);
  if (options.extraAuthorities) authorities_ = options.extraAuthorities->string();
  const Seconds timeout =
      std::min(request_.timeout, options.longestTimeout.value_or(request_.timeout));
  deadline_ = SteadyTime::clock::now() + bounded(timeout);
}

void Transfer::prepare(CURL* easy) {
  set(easy, CURLOPT_ERRORBUFFER, detail_.data());
  set(easy, CURLOPT_PRIVATE, this);
  set(easy, CURLOPT_NOSIGNAL, 1L);
  set(easy, CURLOPT_TIMEOUT_MS, millisecondsUntil(deadline_));
  set(easy, CURLOPT_WRITEFUNCTION, &Transfer::receive);
  set(easy, CURLOPT_WRITEDATA, this);
  set(easy, CURLOPT_HEADERFUNCTION, &Transfer::receiveHeader);
  set(easy, CURLOPT_HEADERDATA, this);
  set(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  set(easy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(kMaxResponseBytes));
  prepareConnection(easy);
  prepareContent(easy);
}

void Transfer::prepareConnection(CURL* easy) {
  set(easy, CURLOPT_URL, address_.c_str());
  set(easy, CURLOPT_PROTOCOLS_STR, "http,https");
  // Redirects are answers, not followed, so no header reaches a host that was not asked for.
  set(easy, CURLOPT_FOLLOWLOCATION, 0L);
  set(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));
  set(easy, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  // The system's authorities stay trusted: libcurl finds those by its directory.
  if (!authorities_.empty()) set(easy, CURLOPT_CAINFO, authorities_.c_str());
  // Plain http is allowed only because it stays on this machine, so it must not go through a proxy.
  if (isLoopback(url_)) set(easy, CURLOPT_NOPROXY, "*");
  // Without it, a transfer that ends during the look-up of its host waits for the look-up, and all
  // other transfers wait with it.
  set(easy, CURLOPT_QUICK_EXIT, 1L);
}

void Transfer::prepareContent(CURL* easy) {
  if (request_.method == "HEAD") {
    set(easy, CURLOPT_NOBODY, 1L);
  } else if (request_.method == "GET" && request_.body.empty()) {
    set(easy, CURLOPT_HTTPGET, 1L);
  } else {
    set(easy, CURLOPT_POSTFIELDS, request_.body.c_str());
    set(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request_.body.size()));
    set(easy, CURLOPT_CUSTOMREQUEST, request_.method.c_str());
  }
  // libcurl reads "Name:" as "leave the header out" and "Name;" as "send it empty".
  for (const UrlHeader& header : request_.headers)
    addHeader(header.value.empty() ? header.name + ";" : header.name + ": " + header.value);
  // A large body is sent at once, not after a second of waiting for "100 Continue".
  addHeader("Expect:");
  set(easy, CURLOPT_HTTPHEADER, headers_.get());
}

void Transfer::addHeader(const std::string& line) {
  curl_slist* const longer = curl_slist_append(headers_.get(), line.c_str());
  if (longer == nullptr) throw std::bad_alloc();
  static_cast<void>(headers_.release());
  headers_.reset(longer);
}

std::size_t Transfer::receive(char* bytes, std::size_t size, std::size_t count, void* self) {
  auto& transfer = *static_cast<Transfer*>(self);
  const std::size_t length = size * count;
  transfer.tooLarge_ = length > kMaxResponseBytes - transfer.body_.size();
  if (transfer.tooLarge_) return 0;
  transfer.body_.append(bytes, length);
  return length;
}

std::size_t Transfer::receiveHeader(char* bytes, std::size_t size, std::size_t count, void* self) {
  const std::string_view line(bytes, size * count);
  auto& transfer = *static_cast<Transfer*>(self);
  if (line.starts_with("HTTP/"))
    transfer.headersEnded_ = false;  // Another response may precede it.
  if (line == "\r\n" || line == "\n") transfer.headersEnded_ = true;
  return line.size();
}

void Transfer::finish(CURL* easy, CURLcode result) {
  if (tooLarge_ || result == CURLE_FILESIZE_EXCEEDED) return fail(responseTooLarge());
  // The scheme was checked, so it is the server that speaks a protocol libcurl does not know.
  if (result == CURLE_UNSUPPORTED_PROTOCOL) return reply_.answer(UrlResponse{});
  if (result != CURLE_OK) return fail(curlFailure(result, detail_.data()));
  long status = 0;
  curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &status);
  // libcurl accepts an answer that ends among its headers.
  if (!headersEnded_) return fail(curlFailure(CURLE_PARTIAL_FILE, ""));
  UrlResponse response{static_cast<int>(status), std::move(body_)};
  reply_.answer(std::move(response));
}

void Transfer::fail(const Error& error) { reply_.fail(error); }

namespace {

void initialiseLibrary() {
  // Never undone: other parts of the application may use libcurl too.
  static const CURLcode code = curl_global_init(CURL_GLOBAL_DEFAULT);
  if (code != CURLE_OK) throw curlFailure(code, "");
}

/// Signals belong to the application's own threads. Writing to a closed connection raises one too,
/// which would end the process.
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
  do {  // Finished transfers make room for waiting ones.
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

/// Until the first waiting transfer is late; libcurl watches the active ones itself.
int TransferLoop::millisecondsToDeadline() const {
  auto nearest = std::chrono::milliseconds(std::numeric_limits<int>::max());
  const auto now = Transfer::SteadyTime::clock::now();
  for (const auto& transfer : waiting_)
    nearest =
        std::min(nearest, std::chrono::ceil<std::chrono::milliseconds>(transfer->deadline() - now));
  return static_cast<int>(std::max(nearest, std::chrono::milliseconds(0)).count());
}

void TransferLoop::beginWaiting() {
  // libcurl's own limit of connections sometimes forgets waiting transfers.
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
    const CURLcode result = message->data.result;  // Removing the handle frees the message.
    Transfer* transfer = nullptr;
    curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
    const auto found = active_.find(transfer);
    Active active = std::move(found->second);
    active_.erase(found);
    // The caller first, so that it does not wait for the cleanup.
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
