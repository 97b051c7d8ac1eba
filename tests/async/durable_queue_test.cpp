#include <ZelvoraSDK/async/durable_queue.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/use_future.hpp>
#include <chrono>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/async/threads.h>
#include <tests/support/child_process.h>

namespace zelvora {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

DurableQueue queueOn(WorkerPool& pool) {
  return DurableQueue([&pool] { return pool.executor(); });
}

asio::awaitable<std::string> outcomeOf(DurableQueue queue, std::function<int()> work) {
  try {
    const int value = co_await queue.ask<int>(std::move(work));
    co_return std::to_string(value);
  } catch (const std::exception& failure) {
    co_return failure.what();
  }
}

TEST(DurableQueue, RunsItsWorkInOrderOffTheCallersThread) {
  WorkerPool pool(2);
  WorkerPool callers(1);
  const DurableQueue queue = queueOn(pool);
  std::vector<int> done;
  std::thread::id ranOn;
  for (int i = 0; i < 100; ++i) queue.accept([&done, i] { done.push_back(i); });
  queue.accept([] { throw std::runtime_error("dropped"); });
  const std::function<int()> count = [&] {
    ranOn = std::this_thread::get_id();
    return static_cast<int>(done.size());
  };
  const auto ask = [&](const std::function<int()>& work) {
    return asio::co_spawn(callers.executor(), outcomeOf(queue, work), asio::use_future).get();
  };
  EXPECT_EQ(ask(count), "100");
  EXPECT_NE(ranOn, std::this_thread::get_id());
  EXPECT_EQ(ask([]() -> int { throw std::runtime_error("spilt"); }), "spilt");
}

TEST(DurableQueue, FinishesAcceptedWorkWhenItsThreadsEndFirst) {
  auto pool = std::make_unique<WorkerPool>(1);
  WorkerPool callers(1);
  const DurableQueue queue([threads = pool->executor()] { return threads; });
  std::promise<void> busy;
  std::promise<void> goOn;
  std::atomic<int> done = 0;
  asio::post(pool->executor(), [&] {
    busy.set_value();
    goOn.get_future().get();
  });
  busy.get_future().get();
  for (int i = 0; i < 200; ++i) queue.accept([&] { ++done; });
  auto question =
      asio::co_spawn(callers.executor(), outcomeOf(queue, [] { return 1; }), asio::use_future);
  std::thread ending([&] { pool.reset(); });
  std::this_thread::yield();
  goOn.set_value();
  ending.join();
  // The pool may end before or after the question's turn; there is an answer either way.
  EXPECT_THAT(question.get(), ::testing::AnyOf("1", "The background threads have ended"));
  queue.accept([&] { ++done; });
  EXPECT_TRUE(DurableQueue::finishAll(seconds(10)));
  EXPECT_EQ(done, 201);
}

TEST(DurableQueue, WaitsForAHungStoreNoLongerThanTheLimit) {
  WorkerPool pool(1);
  const auto goOn = std::make_shared<std::promise<void>>();
  std::atomic<bool> other = false;
  queueOn(pool).accept([goOn] { goOn->get_future().get(); });
  WorkerPool otherPool(1);
  queueOn(otherPool).accept([&] { other = true; });
  EXPECT_FALSE(DurableQueue::finishAll(milliseconds(50)));
  EXPECT_TRUE(other);
  goOn->set_value();
  EXPECT_TRUE(DurableQueue::finishAll(seconds(10)));
}

TEST(EndingWork, IsWaitedForOnlyInTheTimeThatOthersLeft) {
  testing::ChildProcess process([] {
    const auto all = EndingWork::timeLeftAtExit();
    std::this_thread::sleep_for(milliseconds(20));
    return EndingWork::timeLeftAtExit() < all ? 0 : 1;
  });
  EXPECT_EQ(process.wait(), 0);
}

}  // namespace
}  // namespace zelvora
