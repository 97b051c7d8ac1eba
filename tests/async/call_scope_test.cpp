#include <ZelvoraSDK/async/call_scope.h>

#include <gtest/gtest.h>

#include <atomic>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/use_future.hpp>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <ZelvoraSDK/async/callbacks.h>
#include <ZelvoraSDK/async/executors.h>

namespace zelvora {
namespace {

using Scope = std::shared_ptr<CallScope>;
using Start = std::function<asio::awaitable<int>()>;

/// A call that waits until it is cancelled, as a transfer does.
struct Transfer {
  std::promise<void> begun;
  std::promise<void> ended;
};

asio::awaitable<int> transferring(std::shared_ptr<Transfer> transfer) {
  const std::shared_ptr<void> atEnd(nullptr, [transfer](void*) { transfer->ended.set_value(); });
  asio::steady_timer timer(co_await asio::this_coro::executor, std::chrono::hours(1));
  transfer->begun.set_value();
  co_await timer.async_wait(asio::use_awaitable);
  co_return 1;
}

asio::awaitable<int> give(int value) { co_return value; }

asio::awaitable<int> fail(bool withError) {
  if (withError) throw Error("Test", 7, "went wrong");
  throw std::runtime_error("spilt");
  co_return 0;
}

asio::awaitable<std::string> outcomeOf(Scope scope, Start start) {
  try {
    const int value = co_await CallScope::await<int>(scope, std::move(start));
    co_return std::to_string(value);
  } catch (const std::exception& failure) {
    co_return failure.what();
  }
}

std::future<std::string> started(const asio::any_io_executor& executor, const Scope& scope,
                                 Start start) {
  return asio::co_spawn(executor, outcomeOf(scope, std::move(start)), asio::use_future);
}

TEST(CallScope, PassesOnWhatACallReturnsOrThrows) {
  WorkerPool pool(2);
  const Scope scope = CallScope::make(pool.executor());
  EXPECT_EQ(started(pool.executor(), scope, [] { return give(5); }).get(), "5");
  EXPECT_EQ(started(pool.executor(), scope, [] { return fail(true); }).get(), "went wrong");
  EXPECT_EQ(started(pool.executor(), scope, [] { return fail(false); }).get(), "spilt");
}

TEST(CallScope, EndsWhatIsUnderWayAndStartsNothingMore) {
  WorkerPool pool(2);
  WorkerPool callers(1);
  const Scope parent = CallScope::make(pool.executor());
  const Scope child = parent->makeChild();
  const Scope sibling = parent->makeChild();
  for (const Scope& closing : {child, parent}) {
    auto transfer = std::make_shared<Transfer>();
    auto outcome = started(callers.executor(), closing == child ? child : sibling,
                           [transfer] { return transferring(transfer); });
    transfer->begun.get_future().get();
    closing->close();
    EXPECT_EQ(outcome.get(), scopeClosed().description());
    transfer->ended.get_future().get();
  }
  bool entered = false;
  sibling->enter([&] { entered = true; });
  EXPECT_FALSE(entered);
  std::atomic<bool> begun = false;
  const Start late = [&] {
    begun = true;
    return give(1);
  };
  EXPECT_EQ(started(callers.executor(), sibling, late).get(), scopeClosed().description());
  EXPECT_FALSE(begun);
}

TEST(CallScope, AnswersItsCallerEvenWhenTheWorkNeverEnds) {
  WorkerPool pool(1);
  WorkerPool callers(1);
  const Scope scope = CallScope::make(pool.executor());
  std::promise<void> busy;
  const auto goOn = std::make_shared<std::promise<void>>();  // outlives the test on the pool
  auto outcome = started(callers.executor(), scope, [&busy, goOn] {
    busy.set_value();
    goOn->get_future().get();  // ignores cancellation, as a port may
    return give(1);
  });
  busy.get_future().get();
  scope->close();
  EXPECT_EQ(outcome.get(), scopeClosed().description());
  goOn->set_value();
}

TEST(CallScope, FailsACallWhoseThreadsEnd) {
  auto pool = std::make_unique<WorkerPool>(1);
  WorkerPool callers(1);
  const Scope scope = CallScope::make(pool->executor());
  auto transfer = std::make_shared<Transfer>();
  auto outcome = started(callers.executor(), scope, [transfer] { return transferring(transfer); });
  transfer->begun.get_future().get();
  pool.reset();
  EXPECT_EQ(outcome.get(), threadsEnded().description());
  EXPECT_EQ(started(callers.executor(), scope, [] { return give(1); }).get(),
            threadsEnded().description());
}

TEST(CallScope, ClosesWhileItsCallsEnd) {
  WorkerPool pool(2);
  WorkerPool callers(2);
  for (int round = 0; round < 200; ++round) {
    const Scope scope = CallScope::make(pool.executor());
    std::vector<std::future<std::string>> outcomes;
    for (int i = 0; i < 4; ++i)
      outcomes.push_back(started(callers.executor(), scope, [] { return give(1); }));
    std::thread closing([&] { scope->close(); });
    for (auto& outcome : outcomes) {
      const std::string text = outcome.get();
      EXPECT_TRUE(text == "1" || text == scopeClosed().description()) << text;
    }
    closing.join();
  }
}

/// A slot whose owner is `scope`.
Slot<int> slotOn(const MainLoop& loop, const Scope& scope) {
  return Slot<int>([executor = loop.executor(), scope](std::function<void()> work) {
    asio::post(executor, [scope, work = std::move(work)] { scope->enter(work); });
  });
}

class SlotTest : public ::testing::Test {
 protected:
  void runUntilIdle() {
    asio::post(loop_.executor(), [this] { loop_.stop(); });
    loop_.run();
  }

  WorkerPool pool_{1};
  MainLoop loop_;
  Scope scope_ = CallScope::make(pool_.executor());
  Slot<int> slot_ = slotOn(loop_, scope_);
  std::vector<int> seen_;
};

TEST_F(SlotTest, LetsAHandlerReplaceOrClearItself) {
  slot_ = [this, alive = std::make_shared<int>(1)](int value) {
    slot_ = [this](int later) { seen_.push_back(100 + later); };
    seen_.push_back(*alive * value);  // still has its captures after it was replaced
  };
  slot_.send(1);
  slot_.send(2);
  runUntilIdle();
  slot_ = [this, alive = std::make_shared<int>(1)](int value) {
    slot_ = nullptr;
    seen_.push_back(*alive * value);
  };
  slot_.send(3);
  slot_.send(4);
  runUntilIdle();
  EXPECT_EQ(seen_, (std::vector{1, 102, 3}));
  EXPECT_FALSE(slot_);
}

TEST_F(SlotTest, HandsWhatAHandlerThrowsToTheLoopOnce) {
  slot_ = [this](int value) {
    seen_.push_back(value);
    throw std::runtime_error("spilt");
  };
  slot_.send(1);
  EXPECT_THROW(loop_.run(), std::runtime_error);
  runUntilIdle();
  EXPECT_EQ(seen_, std::vector{1});
}

TEST_F(SlotTest, FallsSilentWhenItsOwnerClosesInsideTheHandler) {
  slot_ = [this](int value) {
    seen_.push_back(value);
    scope_->close();
  };
  slot_.send(1);
  slot_.send(2);
  runUntilIdle();
  EXPECT_EQ(seen_, std::vector{1});
}

}  // namespace
}  // namespace zelvora
