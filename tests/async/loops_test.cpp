#include <gtest/gtest.h>

#include <atomic>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <future>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/async/serial_queue.h>

namespace zelvora {
namespace {

asio::awaitable<void> sleepForever(std::shared_ptr<int> held) {
  asio::steady_timer timer(co_await asio::this_coro::executor, std::chrono::hours(1));
  co_await timer.async_wait(asio::use_awaitable);
  *held = 1;
}

/// Posts every kind of work that holds `held`, on an executor that outlives its loop.
void leaveWork(const asio::any_io_executor& executor, const std::shared_ptr<int>& held) {
  asio::post(executor, [held] { *held = 1; });
  const auto serial = SerialExecutor::on(executor);
  asio::post(serial, [held, serial] { *held = 1; });
  asio::co_spawn(serial, sleepForever(held), asio::detached);
  asio::co_spawn(executor, sleepForever(held), asio::detached);
}

TEST(MainLoop, DestroysWorkThatItNeverRanAndWorkPostedLater) {
  auto loop = std::make_unique<MainLoop>();
  const auto executor = loop->executor();
  const auto held = std::make_shared<int>();
  // The first run leaves a coroutine that waits for its timer; the rest never starts.
  leaveWork(executor, held);
  asio::post(executor, [&] { loop->stop(); });
  loop->run();
  *held = 0;
  leaveWork(executor, held);
  loop.reset();
  EXPECT_EQ(held.use_count(), 1);
  leaveWork(executor, held);
  EXPECT_EQ(held.use_count(), 1);
  EXPECT_EQ(*held, 0);
}

TEST(MainLoop, MayBeDestroyedInsideItsOwnWork) {
  auto loop = std::make_unique<MainLoop>();
  const auto held = std::make_shared<int>();
  asio::post(loop->executor(), [&] { loop.reset(); });
  leaveWork(loop->executor(), held);
  loop->run();
  EXPECT_EQ(held.use_count(), 1);
  EXPECT_EQ(*held, 0);
}

TEST(MainLoop, LetsAnExceptionOutAndGoesOnAfterIt) {
  MainLoop loop;
  std::vector<int> ran;
  asio::post(loop.executor(), [&] {
    ran.push_back(1);
    throw std::runtime_error("spilt");
  });
  asio::post(loop.executor(), [&] {
    ran.push_back(2);
    loop.stop();
  });
  EXPECT_THROW(loop.run(), std::runtime_error);
  loop.run();
  EXPECT_EQ(ran, (std::vector{1, 2}));
}

TEST(WorkerPool, DestroysWorkThatItNeverRanAndWorkPostedLater) {
  auto pool = std::make_unique<WorkerPool>(1);
  const auto executor = pool->executor();
  const auto held = std::make_shared<int>();
  std::promise<void> busy;
  std::promise<void> goOn;
  asio::post(executor, [&] {
    busy.set_value();
    goOn.get_future().get();
  });
  busy.get_future().get();
  leaveWork(executor, held);
  std::thread ending([&] { pool.reset(); });
  std::thread racing([&] {
    for (int i = 0; i < 1000; ++i) asio::post(executor, [held] {});
  });
  racing.join();
  goOn.set_value();
  ending.join();
  leaveWork(executor, held);
  EXPECT_EQ(held.use_count(), 1);
}

TEST(WorkerPool, MayBeDestroyedOnOneOfItsOwnThreads) {
  auto pool = std::make_unique<WorkerPool>(2);
  std::promise<void> gone;
  const auto held = std::make_shared<int>();
  asio::post(pool->executor(), [&] {
    pool.reset();
    gone.set_value();
  });
  gone.get_future().get();
}

/// Posting races with the end: whichever wins, nothing stays behind.
TEST(WorkerPool, KeepsNoWorkThatIsPostedWhileItEnds) {
  for (int round = 0; round < 50; ++round) {
    auto pool = std::make_unique<WorkerPool>(2);
    const auto executor = pool->executor();
    const auto held = std::make_shared<int>();
    std::atomic<bool> begun = false;
    std::thread posting([&] {
      for (int i = 0; i < 200; ++i) {
        asio::post(executor, [held, executor] { asio::post(executor, [held] {}); });
        begun = true;
      }
    });
    while (!begun) std::this_thread::yield();
    pool.reset();
    posting.join();
    ASSERT_EQ(held.use_count(), 1);
  }
}

}  // namespace
}  // namespace zelvora
