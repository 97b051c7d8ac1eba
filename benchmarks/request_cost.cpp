#include <benchmarks/request_cost.h>

#include <curl/curl.h>
#include <sched.h>

#include <chrono>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/curl/curl_url_session.h>
#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/async/executors.h>
#include <benchmarks/timing.h>
#include <benchmarks/workload.h>
#include <tests/support/scripted_server.h>

namespace zelvora::bench {
namespace {

constexpr int kRounds = 15;
constexpr int kRequestsPerRound = 200;

/// Keeps this thread, and all that it starts, on one processor, so that the cost of a request is
/// measured and not where the scheduler happens to put the threads that serve it.
class OneProcessor {
 public:
  OneProcessor() {
    sched_getaffinity(0, sizeof before_, &before_);
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(sched_getcpu(), &one);
    sched_setaffinity(0, sizeof one, &one);
  }
  ~OneProcessor() { sched_setaffinity(0, sizeof before_, &before_); }

  OneProcessor(const OneProcessor&) = delete;
  OneProcessor& operator=(const OneProcessor&) = delete;

 private:
  cpu_set_t before_{};
};

double now() {
  const auto since = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double>(since).count();
}

UrlRequest interpretRequest(const test::ScriptedServer& server) {
  UrlRequest request;
  request.url = server.url("/api/interpret");
  request.headers = {{"Content-Type", "application/json"}, {"Authorization", "Bearer pk_test"}};
  request.body = workload(100).json;
  return request;
}

/// libcurl with no more than the request needs.
class BareHandle {
 public:
  explicit BareHandle(const UrlRequest& request) : request_(request) {
    for (const UrlHeader& header : request_.headers)
      headers_ = curl_slist_append(headers_, (header.name + ": " + header.value).c_str());
    curl_easy_setopt(easy_, CURLOPT_URL, request_.url.c_str());
    curl_easy_setopt(easy_, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, headers_);
    curl_easy_setopt(easy_, CURLOPT_POSTFIELDS, request_.body.c_str());
    curl_easy_setopt(easy_, CURLOPT_POSTFIELDSIZE_LARGE,
                     static_cast<curl_off_t>(request_.body.size()));
    curl_easy_setopt(easy_, CURLOPT_WRITEFUNCTION, &BareHandle::receive);
    curl_easy_setopt(easy_, CURLOPT_WRITEDATA, &answer_);
  }
  ~BareHandle() {
    curl_easy_cleanup(easy_);
    curl_slist_free_all(headers_);
  }

  BareHandle(const BareHandle&) = delete;
  BareHandle& operator=(const BareHandle&) = delete;

  /// The median of a round, in seconds.
  double round() {
    std::vector<double> seconds;
    for (int i = 0; i < kRequestsPerRound; ++i) {
      answer_.clear();
      const double start = now();
      if (curl_easy_perform(easy_) != CURLE_OK) throw std::runtime_error("the request failed");
      seconds.push_back(now() - start);
    }
    return quantile(std::move(seconds), 0.5);
  }

 private:
  static std::size_t receive(char* bytes, std::size_t size, std::size_t count, void* answer) {
    static_cast<std::string*>(answer)->append(bytes, size * count);
    return size * count;
  }

  UrlRequest request_;
  std::string answer_;
  curl_slist* headers_ = nullptr;
  CURL* easy_ = curl_easy_init();
};

asio::awaitable<void> sendRound(UrlSession& session, UrlRequest request, MainLoop& loop,
                                std::vector<double>& seconds) {
  for (int i = 0; i < kRequestsPerRound; ++i) {
    UrlRequest copy = request;
    const double start = now();
    co_await session.send(std::move(copy));
    seconds.push_back(now() - start);
  }
  loop.stop();
}

double adapterRound(UrlSession& session, const UrlRequest& request, MainLoop& loop) {
  std::vector<double> seconds;
  spawn(loop.executor(), sendRound(session, request, loop, seconds),
        [](const std::exception_ptr& failure) { std::rethrow_exception(failure); });
  loop.run();
  return quantile(std::move(seconds), 0.5);
}

}  // namespace

double warmRequestVsLibcurl() {
  const OneProcessor pinned;
  const test::ScriptedServer server({test::answeringAll(
      test::httpResponse(200, R"({"type":"execute","say":"OK","task":{"id":"open_cart"}})"))});
  const UrlRequest request = interpretRequest(server);
  MainLoop loop;
  CurlUrlSession session;
  BareHandle bare(request);
  bare.round();
  adapterRound(session, request, loop);
  return medianRatio(
      kRounds, [&] { return adapterRound(session, request, loop); }, [&] { return bare.round(); });
}

}  // namespace zelvora::bench
