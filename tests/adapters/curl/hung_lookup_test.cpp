#include <dlfcn.h>
#include <gtest/gtest.h>
#include <netdb.h>

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/thread_pool.hpp>
#include <boost/asio/use_future.hpp>
#include <future>
#include <memory>
#include <string_view>

#include <ZelvoraSDK/adapters/curl/curl_url_session.h>
#include <ZelvoraSDK/base/error.h>

namespace {

/// A name server that does not answer until the test says so.
struct HungLookup {
  std::promise<void> begun;
  std::promise<void> opened;
  std::promise<void> ended;
};
HungLookup* hungLookup = nullptr;

}  // namespace

// Replaces the C library's function in this whole program.
extern "C" int getaddrinfo(const char* name, const char* service, const addrinfo* hints,
                           addrinfo** found) {
  using Lookup = int (*)(const char*, const char*, const addrinfo*, addrinfo**);
  static const auto real = reinterpret_cast<Lookup>(::dlsym(RTLD_NEXT, "getaddrinfo"));
  if (name && std::string_view(name) == "hung.test") {
    hungLookup->begun.set_value();
    hungLookup->opened.get_future().wait();
    hungLookup->ended.set_value();
    return EAI_AGAIN;
  }
  return real(name, service, hints, found);
}

namespace zelvora {
namespace {

TEST(HungLookup, DelaysNeitherACancelledCallerNorTheRelease) {
  static HungLookup lookup;  // its last promise may still be in use when the test ends
  hungLookup = &lookup;
  asio::thread_pool pool(1);
  auto session = std::make_unique<CurlUrlSession>();
  auto answer =
      asio::co_spawn(pool, session->send({.url = "https://hung.test/", .timeout = Seconds{600}}),
                     asio::use_future);
  lookup.begun.get_future().wait();
  session.reset();
  EXPECT_THROW(answer.get(), Error);
  // The look-up can end only here: a release that waited for it would never get this far.
  lookup.opened.set_value();
  lookup.ended.get_future().wait();
}

}  // namespace
}  // namespace zelvora
