#include <ZelvoraSDK/async/serial_queue.h>

#include <gtest/gtest.h>

#include <boost/asio/packaged_task.hpp>  // must change nothing

#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/async/serial_queue.h>

namespace zelvora {
namespace {

TEST(SerialQueue, RunsEachThreadsWorkInOrderAndOneAtATime) {
  constexpr int kEach = 1000;
  WorkerPool pool(4);
  const SerialQueue queue("test", pool.executor());
  std::vector<std::pair<int, int>> ran;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread)
    threads.emplace_back([&, thread] {
      for (int i = 0; i < kEach; ++i)
        queue.post([&ran, thread, i] { ran.emplace_back(thread, i); });
    });
  for (auto& thread : threads) thread.join();

  const auto all = queue.wait([&] { return ran; });
  ASSERT_EQ(all.size(), 4U * kEach);
  int next[4] = {};
  for (const auto& [thread, i] : all) EXPECT_EQ(i, next[thread]++);
}

TEST(SerialQueue, HandsFailuresToTheWaitingCaller) {
  WorkerPool pool(1);
  const SerialQueue queue("test", pool.executor());
  EXPECT_THROW(queue.wait([]() -> int { throw Error("Test", 1, "no"); }), Error);
}

TEST(SerialQueueDeathTest, RefusesToWaitForItself) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(
      {
        WorkerPool pool(1);
        const SerialQueue queue("test", pool.executor());
        queue.wait([&queue] { queue.wait([] {}); });
      },
      "Fatal error: test: a wait on the queue for itself");
}

TEST(RepeatingTimer, CallsBackUntilItsCallbackDestroysIt) {
  WorkerPool pool(2);
  const SerialQueue queue("test", pool.executor());
  std::promise<void> third;
  std::optional<RepeatingTimer> timer;
  int calls = 0;
  queue.post([&] {
    timer.emplace(queue.executor(), std::chrono::milliseconds(1), [&] {
      if (++calls < 3) return;
      timer.reset();
      third.set_value();
    });
  });
  third.get_future().get();
  EXPECT_EQ(queue.wait([&] { return calls; }), 3);
}

}  // namespace
}  // namespace zelvora
