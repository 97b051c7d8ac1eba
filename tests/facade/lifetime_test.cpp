#include <gtest/gtest.h>

#include <atomic>
#include <boost/asio/post.hpp>
#include <thread>
#include <vector>

#include <ZelvoraSDK/zelvora.h>

#include "small_spec.h"
#include "test_application.h"

namespace zelvora {
namespace {

using testing::smallSpec;
using testing::TestApplication;

TEST(Lifetime, OverlappingCallsDeliverOnceEach) {
  constexpr int kThreads = 8;
  constexpr int kCallsEach = 125;
  TestApplication application;
  const std::string context = R"("context":{"enabled":true,"memory":{}},)";
  const auto zelvora = application.facade(smallSpec("", context));
  int delivered = 0;
  zelvora->onResult = [&](const ZelvoraResult& result) {
    EXPECT_TRUE(std::holds_alternative<ZelvoraExecute>(result));
    if (++delivered == kThreads * kCallsEach) application.mainLoop->stop();
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&] {
      for (int call = 0; call < kCallsEach; ++call) zelvora->routeAndCallback("open my cart");
    });
  }
  application.mainLoop->run();
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(delivered, kThreads * kCallsEach);
}

TEST(Lifetime, AReleasedFacadeDeliversNothingOfAPendingRequest) {
  TestApplication application;
  auto zelvora = application.facade(smallSpec());
  bool heard = false;
  zelvora->onResult = [&](const ZelvoraResult&) { heard = true; };
  zelvora->routeAndCallback("play some jazz");
  ASSERT_TRUE(application.network->waitForRequests(1));
  zelvora.reset();
  application.network->answer(200, R"({"matches":[{"taskId":"orders","confidence":0.9}]})");
  // Another façade's outcome arrives after anything that the first one could have delivered.
  const auto other = application.facade(smallSpec());
  application.routeAndWait(*other, "open my cart");
  application.routeAndWait(*other, "open my cart");
  EXPECT_FALSE(heard);
}

TEST(Lifetime, MayBeReleasedInItsOwnCallback) {
  TestApplication application;
  auto zelvora = application.facade(smallSpec());
  zelvora->onResult = [&](const ZelvoraResult&) {
    zelvora.reset();
    application.mainLoop->stop();
  };
  zelvora->routeAndCallback("open my cart");
  application.mainLoop->run();
  EXPECT_EQ(zelvora, nullptr);
}

}  // namespace
}  // namespace zelvora
