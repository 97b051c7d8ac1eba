#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include <ZelvoraSDK/async/guarded.h>

namespace zelvora {

/// A piece of work that is run at most once.
class QueuedWork {
 public:
  virtual ~QueuedWork() = default;
  virtual void run() = 0;

  template <class Function>
  static std::unique_ptr<QueuedWork> of(Function&& function) {
    using Held = std::decay_t<Function>;
    struct Work final : QueuedWork {
      explicit Work(Function&& held) : held_(std::forward<Function>(held)) {}
      void run() override { std::move(held_)(); }
      Held held_;
    };
    return std::make_unique<Work>(std::forward<Function>(function));
  }
};

/// What executors share: the way into the main thread. Callable from any thread but where a member
/// says otherwise.
class MainQueue {
 public:
  using Works = std::deque<std::unique_ptr<QueuedWork>>;

  explicit MainQueue(QObject& receiver) {
    inbox_.with([&](Inbox& inbox) { inbox.receiver = &receiver; });
  }

  static QEvent::Type wakeEvent() {
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
  }

  /// Work that comes after `close()` is destroyed here, outside the lock, since it may post.
  void post(std::unique_ptr<QueuedWork> work) {
    inbox_.with([&](Inbox& inbox) {
      if (!inbox.receiver) return;
      // One wake event stands for everything inside.
      if (inbox.works.empty()) QCoreApplication::postEvent(inbox.receiver, new QEvent(wakeEvent()));
      inbox.works.push_back(std::move(work));
    });
  }

  Works take() {
    return inbox_.with([](Inbox& inbox) { return std::exchange(inbox.works, {}); });
  }

  /// What waited; nothing is accepted from now on.
  Works close() {
    return inbox_.with([](Inbox& inbox) {
      inbox.receiver = nullptr;
      return std::exchange(inbox.works, {});
    });
  }

 private:
  struct Inbox {
    QObject* receiver = nullptr;  ///< Null: closed.
    Works works;
  };
  Guarded<Inbox> inbox_;
};

/// Runs the queue's work when it is woken. Lives in the main thread.
class MainQueueReceiver final : public QObject {
 public:
  explicit MainQueueReceiver(std::function<void(std::exception_ptr)> onFailure)
      : onFailure_(std::move(onFailure)) {}
  ~MainQueueReceiver() override { shutdown(); }

  [[nodiscard]] const std::shared_ptr<MainQueue>& queue() const { return queue_; }

  void shutdown() {
    const auto dropped = queue_->close();
    due_.clear();
  }

  bool event(QEvent* event) override {
    if (event->type() != MainQueue::wakeEvent()) return QObject::event(event);
    for (auto& work : queue_->take()) due_.push_back(std::move(work));
    // Only what is due by now, so that Qt's own events are not starved. Work that runs an event
    // loop of its own lets the rest of this pass run in there, in order.
    for (std::size_t left = due_.size(); left > 0 && !due_.empty(); --left) runNext();
    return true;
  }

 private:
  void runNext() {
    const auto work = std::move(due_.front());
    due_.pop_front();
    try {
      work->run();
    } catch (...) {
      onFailure_(std::current_exception());
    }
  }

  std::function<void(std::exception_ptr)> onFailure_;
  std::shared_ptr<MainQueue> queue_ = std::make_shared<MainQueue>(*this);
  MainQueue::Works due_;
};

}  // namespace zelvora
