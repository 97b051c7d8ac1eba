#include <ZelvoraSDK/adapters/qt/qt_main_executor.h>

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/execution.hpp>
#include <boost/asio/execution_context.hpp>
#include <cstddef>
#include <utility>

#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/async/serial_queue.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

QEvent::Type wakeEvent() {
  static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
  return type;
}

void dieOf(const std::exception_ptr& failure) {
  fatalError("QtMainExecutor: work let escape: " + describeFailure(failure));
}

}  // namespace

/// What executors share: the way into the main thread, and Asio's services, such as the one that
/// keeps timers. Lives as long as any executor.
class QtMainExecutor::Loop : public asio::execution_context {
 public:
  explicit Loop(FailureHandler onFailure) : onFailure_(std::move(onFailure)) {}

  void open(QObject& receiver) {
    inbox_.with([&](Inbox& inbox) { inbox.receiver = &receiver; });
  }

  /// Callable from any thread. Work that comes after `close()` is destroyed here, outside the lock,
  /// since it may post.
  void post(std::unique_ptr<QueuedWork> work) {
    inbox_.with([&](Inbox& inbox) {
      if (!inbox.receiver) return;
      // One wake event covers all queued work.
      if (inbox.works.empty()) QCoreApplication::postEvent(inbox.receiver, new QEvent(wakeEvent()));
      inbox.works.push_back(std::move(work));
    });
  }

  /// Runs what is due by now and no more, so that Qt's own events are not starved. If work runs an
  /// event loop of its own, the rest of this pass runs in there, in order.
  void runDue() {
    ++depth_;
    for (auto& work : take()) due_.push_back(std::move(work));
    for (std::size_t left = due_.size(); left > 0 && !due_.empty(); --left) runNext();
    --depth_;
  }

  /// Destroys all queued work, and everything posted later. Main thread only.
  void close() {
    const QueuedWorks dropped = inbox_.with([](Inbox& inbox) {
      inbox.receiver = nullptr;
      return std::exchange(inbox.works, {});
    });
    const QueuedWorks due = std::exchange(due_, {});
    // Destroys the timers, whose work holds executors and thus this object.
    asio::execution_context::shutdown();
  }

  [[nodiscard]] bool isRunning() const { return depth_ > 0; }

 private:
  struct Inbox {
    QObject* receiver = nullptr;  ///< Null: closed.
    QueuedWorks works;
  };

  QueuedWorks take() {
    return inbox_.with([](Inbox& inbox) { return std::exchange(inbox.works, {}); });
  }

  void runNext() {
    const auto work = std::move(due_.front());
    due_.pop_front();
    try {
      work->run();
    } catch (...) {
      onFailure_(std::current_exception());
    }
  }

  FailureHandler onFailure_;
  Guarded<Inbox> inbox_;
  // Main thread only:
  QueuedWorks due_;
  int depth_ = 0;
};

/// Runs the loop's work when it is woken. Lives in the main thread.
class QtMainExecutor::Receiver final : public QObject {
 public:
  explicit Receiver(std::shared_ptr<Loop> loop) : loop_(std::move(loop)) { loop_->open(*this); }

  bool event(QEvent* event) override {
    if (event->type() != wakeEvent()) return QObject::event(event);
    // The work may destroy this object.
    const auto loop = loop_;
    loop->runDue();
    return true;
  }

 private:
  std::shared_ptr<Loop> loop_;
};

namespace {

/// The minimum that Asio asks of an executor.
template <class Loop>
class LoopExecutor {
 public:
  explicit LoopExecutor(std::shared_ptr<Loop> loop) : loop_(std::move(loop)) {}

  [[nodiscard]] asio::execution_context& query(asio::execution::context_t /*what*/) const noexcept {
    return *loop_;
  }
  static constexpr asio::execution::blocking_t query(
      asio::execution::blocking_t /*what*/) noexcept {
    return asio::execution::blocking.never;
  }

  template <class Function>
  void execute(Function&& function) const {
    loop_->post(QueuedWork::of(std::forward<Function>(function)));
  }

  bool operator==(const LoopExecutor& other) const noexcept = default;

 private:
  std::shared_ptr<Loop> loop_;
};

}  // namespace

QtMainExecutor::QtMainExecutor() : QtMainExecutor(dieOf) {}

QtMainExecutor::QtMainExecutor(FailureHandler onFailure)
    : loop_(std::make_shared<Loop>(std::move(onFailure))),
      receiver_(std::make_unique<Receiver>(loop_)) {}

QtMainExecutor::~QtMainExecutor() {
  loop_->close();
  // Qt is still using an object whose event is being handled.
  if (loop_->isRunning()) receiver_.release()->deleteLater();
}

asio::any_io_executor QtMainExecutor::executor() const { return LoopExecutor<Loop>(loop_); }

}  // namespace zelvora
