#include <ZelvoraSDK/async/actor.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <boost/asio/use_future.hpp>
#include <future>
#include <thread>
#include <vector>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

using Numbers = std::vector<int>;

asio::awaitable<void> appendRange(Actor<Numbers>& actor, int first, int count) {
  for (int i = first; i < first + count; ++i)
    co_await actor.run([i](Numbers& numbers) { numbers.push_back(i); });
}

template <class Value>
Value waitFor(WorkerPool& pool, asio::awaitable<Value> task) {
  return asio::co_spawn(pool.executor(), std::move(task), asio::use_future).get();
}

TEST(Actor, LosesNoOperationOfOverlappingCallers) {
  constexpr int kCallers = 8;
  constexpr int kEach = 500;
  WorkerPool pool(4);
  Actor<Numbers> actor;
  std::vector<std::future<void>> done;
  for (int caller = 0; caller < kCallers; ++caller)
    done.push_back(asio::co_spawn(pool.executor(), appendRange(actor, caller * kEach, kEach),
                                  asio::use_future));
  for (auto& each : done) each.get();

  Numbers numbers = waitFor(pool, actor.run([](Numbers& state) { return state; }));
  ASSERT_EQ(numbers.size(), static_cast<std::size_t>(kCallers * kEach));
  std::ranges::sort(numbers);
  EXPECT_EQ(std::ranges::adjacent_find(numbers), numbers.end());
}

asio::awaitable<bool> comesBackToItsExecutor(Actor<Numbers>& actor, MainLoop& loop) {
  const auto mainThread = std::this_thread::get_id();
  co_await actor.run([](Numbers& numbers) { numbers.push_back(1); });
  const bool sameThread = std::this_thread::get_id() == mainThread;
  loop.stop();
  co_return sameThread;
}

TEST(Actor, ResumesTheCallerOnItsOwnExecutor) {
  WorkerPool pool(2);
  MainLoop loop;
  Actor<Numbers> actor;
  std::atomic<bool> stop = false;
  std::atomic<int> waiting = 0;
  auto noise = std::async(std::launch::async, [&] {
    while (!stop) {
      ++waiting;
      actor.post([&waiting](Numbers& numbers) {
        numbers.clear();
        --waiting;
      });
      // Keeps the queue short, so that a caller on a slow thread can drain it to the end.
      while (waiting > 100 && !stop) std::this_thread::yield();
    }
  });
  for (int round = 0; round < 200; ++round) {
    auto same =
        asio::co_spawn(loop.executor(), comesBackToItsExecutor(actor, loop), asio::use_future);
    loop.run();
    ASSERT_TRUE(same.get());
  }
  stop = true;
}

TEST(Actor, HandsAFailureToItsCallerAndStaysUsable) {
  WorkerPool pool(1);
  Actor<Numbers> actor;
  const auto fail = [](Numbers&) -> int { throw Error("Test", 7, "no"); };
  EXPECT_THROW(waitFor(pool, actor.run(fail)), Error);
  EXPECT_EQ(waitFor(pool, actor.run([](Numbers& numbers) { return numbers.size(); })), 0u);
}

asio::awaitable<void> failing() {
  throw Error("Test", 7, "went wrong");
  co_return;
}

TEST(Spawn, ReportsWhatEscapes) {
  WorkerPool pool(1);
  std::promise<std::string> said;
  spawn(pool.executor(), failing(),
        [&said](const std::exception_ptr& failure) { said.set_value(describeFailure(failure)); });
  EXPECT_EQ(said.get_future().get(), "went wrong");
}

}  // namespace
}  // namespace zelvora
