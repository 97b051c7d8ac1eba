#include <ZelvoraSDK/adapters/qt/qt_main_executor.h>

#include <boost/asio/execution.hpp>
#include <boost/asio/execution_context.hpp>
#include <utility>

#include <ZelvoraSDK/adapters/qt/private/main_queue.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

/// The least that Asio asks of an executor.
class QueueExecutor {
 public:
  QueueExecutor(asio::execution_context& context, std::shared_ptr<MainQueue> queue)
      : context_(&context), queue_(std::move(queue)) {}

  [[nodiscard]] asio::execution_context& query(asio::execution::context_t /*what*/) const noexcept {
    return *context_;
  }
  static constexpr asio::execution::blocking_t query(
      asio::execution::blocking_t /*what*/) noexcept {
    return asio::execution::blocking.never;
  }

  template <class Function>
  void execute(Function&& function) const {
    queue_->post(QueuedWork::of(std::forward<Function>(function)));
  }

  bool operator==(const QueueExecutor& other) const noexcept { return queue_ == other.queue_; }

 private:
  asio::execution_context* context_;
  std::shared_ptr<MainQueue> queue_;
};

void dieOf(const std::exception_ptr& failure) {
  fatalError("QtMainExecutor: work let escape: " + describeFailure(failure));
}

}  // namespace

/// Holds Asio's services, such as the one that keeps timers.
class QtMainExecutor::Context : public asio::execution_context {
 public:
  explicit Context(FailureHandler onFailure) : receiver_(std::move(onFailure)) {}
  ~Context() {
    receiver_.shutdown();
    asio::execution_context::shutdown();
    destroy();
  }

  MainQueueReceiver& receiver() { return receiver_; }

 private:
  MainQueueReceiver receiver_;
};

QtMainExecutor::QtMainExecutor() : QtMainExecutor(dieOf) {}

QtMainExecutor::QtMainExecutor(FailureHandler onFailure)
    : context_(std::make_unique<Context>(std::move(onFailure))) {}

QtMainExecutor::~QtMainExecutor() = default;

asio::any_io_executor QtMainExecutor::executor() const {
  return QueueExecutor(*context_, context_->receiver().queue());
}

void QtMainExecutor::shutdown() { context_->receiver().shutdown(); }

}  // namespace zelvora
