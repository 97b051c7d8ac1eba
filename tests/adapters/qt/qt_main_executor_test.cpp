#include <ZelvoraSDK/adapters/qt/qt_main_executor.h>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QThread>
#include <algorithm>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/this_coro.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

/// An application without windows, and the executor of its event loop.
class QtMainExecutorTest : public ::testing::Test {
 protected:
  void note(int number) { noted_.push_back(number); }
  void postNote(int number) {
    asio::post(main_->executor(), [this, number] { note(number); });
  }

  int argc_ = 1;
  std::string name_ = "test";
  std::vector<char*> argv_{name_.data(), nullptr};
  QCoreApplication application_{argc_, argv_.data()};
  std::vector<std::string> failures_;
  std::unique_ptr<QtMainExecutor> main_ = std::make_unique<QtMainExecutor>(
      [this](const std::exception_ptr& failure) { failures_.push_back(describeFailure(failure)); });
  std::vector<int> noted_;
};

TEST_F(QtMainExecutorTest, RunsWorkFromAnyThreadInOrderOnTheMainThread) {
  std::thread elsewhere([this] {
    for (int i = 0; i < 100; ++i) postNote(i);
    asio::post(main_->executor(), [this] {
      EXPECT_EQ(QThread::currentThread(), application_.thread());
      QCoreApplication::quit();
    });
  });
  QCoreApplication::exec();
  elsewhere.join();
  ASSERT_EQ(noted_.size(), 100U);
  EXPECT_TRUE(std::ranges::is_sorted(noted_));
}

TEST_F(QtMainExecutorTest, RunsInOnePassOnlyWhatWasQueuedWhenItBegan) {
  asio::post(main_->executor(), [this] {
    note(1);
    postNote(3);
  });
  postNote(2);
  QCoreApplication::sendPostedEvents();
  EXPECT_EQ(noted_, (std::vector{1, 2}));
  QCoreApplication::sendPostedEvents();
  EXPECT_EQ(noted_, (std::vector{1, 2, 3}));
}

TEST_F(QtMainExecutorTest, KeepsTheOrderWhenWorkRunsALoopOfItsOwn) {
  asio::post(main_->executor(), [this] {
    postNote(3);
    QEventLoop inner;
    asio::post(main_->executor(), [&] { inner.quit(); });
    inner.exec();
    note(4);
  });
  postNote(1);
  postNote(2);
  QCoreApplication::processEvents();
  EXPECT_EQ(noted_, (std::vector{1, 2, 3, 4}));
}

TEST_F(QtMainExecutorTest, ReportsAnEscapedExceptionAndGoesOn) {
  asio::post(main_->executor(), [] { throw std::runtime_error("spilt"); });
  postNote(1);
  QCoreApplication::processEvents();
  EXPECT_EQ(failures_, std::vector<std::string>{"spilt"});
  EXPECT_EQ(noted_, std::vector{1});
}

TEST_F(QtMainExecutorTest, EndsTheProcessOnAnExceptionThatNobodyHandles) {
  EXPECT_DEATH(
      {
        QtMainExecutor strict;
        asio::post(strict.executor(), [] { throw std::runtime_error("spilt"); });
        QCoreApplication::processEvents();
      },
      "Fatal error: QtMainExecutor: work let escape: spilt");
}

TEST_F(QtMainExecutorTest, DropsQueuedWorkAndWorkPostedAfterItsEnd) {
  const auto executor = main_->executor();
  // Dropped work may post more while it is destroyed.
  std::shared_ptr<void> postsAtItsEnd(
      nullptr, [this, executor](void*) { asio::post(executor, [this] { note(1); }); });
  const std::weak_ptr<void> waiting = postsAtItsEnd;
  asio::post(executor, [this, held = std::move(postsAtItsEnd)] { note(2); });
  main_.reset();
  EXPECT_TRUE(waiting.expired());
  auto late = std::make_shared<int>();
  asio::post(executor, [this, late] { note(3); });
  EXPECT_EQ(late.use_count(), 1);
  QCoreApplication::processEvents();
  EXPECT_TRUE(noted_.empty());
}

TEST_F(QtMainExecutorTest, MayBeDestroyedInsideItsOwnWork) {
  asio::post(main_->executor(), [this] { main_.reset(); });
  postNote(1);
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(main_, nullptr);
  EXPECT_TRUE(noted_.empty());
}

asio::awaitable<void> sleepTwice(std::vector<int>* noted) {
  asio::steady_timer timer(co_await asio::this_coro::executor);
  for (const int number : {1, 2}) {
    timer.expires_after(std::chrono::milliseconds(1));
    co_await timer.async_wait(asio::use_awaitable);
    noted->push_back(number);
  }
  QCoreApplication::quit();
}

TEST_F(QtMainExecutorTest, CarriesTimersAndCoroutines) {
  asio::co_spawn(main_->executor(), sleepTwice(&noted_), asio::detached);
  QCoreApplication::exec();
  EXPECT_EQ(noted_, (std::vector{1, 2}));
}

asio::awaitable<void> sleepForever(std::shared_ptr<int> held) {
  asio::steady_timer timer(co_await asio::this_coro::executor, std::chrono::hours(1));
  co_await timer.async_wait(asio::use_awaitable);
  *held = 1;
}

TEST_F(QtMainExecutorTest, DestroysWaitingCoroutinesWhenItEnds) {
  auto held = std::make_shared<int>(0);
  const std::weak_ptr<int> watched = held;
  asio::co_spawn(main_->executor(), sleepForever(std::move(held)), asio::detached);
  QCoreApplication::processEvents();
  EXPECT_FALSE(watched.expired());
  main_.reset();
  EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace zelvora
