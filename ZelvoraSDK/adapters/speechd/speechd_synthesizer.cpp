#include <ZelvoraSDK/adapters/speechd/speechd_synthesizer.h>

#include <boost/asio/dispatch.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

#include <ZelvoraSDK/adapters/speechd/private/session.h>
#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/base/limits.h>

namespace zelvora {
namespace {

using speechd::Dialling;
using speechd::PendingTexts;
using speechd::Session;
using speechd::Socket;
using speechd::Text;
using speechd::TextNumber;
using SteadyClock = std::chrono::steady_clock;

void report(const PendingTexts::OnEnd& onEnd, bool said) {
  if (onEnd) onEnd(said);
}

/// The texts and the conversation, which lives on one thread. Public calls from any thread.
class Speech : public std::enable_shared_from_this<Speech> {
 public:
  void speak(SpeechUtterance utterance, const SpeechPatience& patience) {
    const Seconds allowance =
        patience.perText + patience.perByte * static_cast<double>(utterance.text.size());
    const auto added = pending_.with([&](PendingTexts& pending) {
      return pending.add(std::exchange(utterance.onEnd, nullptr), SteadyClock::now(),
                         std::chrono::duration_cast<SteadyClock::duration>(allowance));
    });
    asio::post(executor_, [self = shared_from_this(), added, text = std::move(utterance)] {
      self->giveUpAt(added.deadline, added.number);
      self->say({.number = added.number,
                 .text = text.text,
                 .language = text.language,
                 .rate = text.rate});
    });
  }

  void stop() {
    endAll();
    asio::post(executor_, [self = shared_from_this()] {
      if (self->session_) self->session_->cancel();
    });
  }

  /// Ready when the conversation has ended, or at once when called on the conversation's own
  /// thread.
  std::future<void> close() {
    endAll();
    auto closed = std::make_shared<std::promise<void>>();
    auto future = closed->get_future();
    asio::dispatch(executor_, [self = shared_from_this(), closed,
                               caller = std::this_thread::get_id()]() mutable {
      const auto session = std::exchange(self->session_, nullptr);
      if (const auto dialling = std::exchange(self->dialling_, nullptr)) dialling->cancel();
      // A caller on another thread must be the last to release this, so that it can join this
      // thread. On this thread nobody waits, and the conversation keeps this until it has hung up.
      const bool isWaitedFor = caller != std::this_thread::get_id();
      if (isWaitedFor) self.reset();
      if (!isWaitedFor || !session) closed->set_value();
      if (session)
        session->close([self, closed, isWaitedFor] {
          if (isWaitedFor) closed->set_value();
        });
    });
    return future;
  }

 private:
  void say(Text text) {
    // A text that was stopped before its turn is not begun.
    const bool isWanted =
        pending_.with([&](const PendingTexts& pending) { return pending.contains(text.number); });
    if (!isWanted) return;
    if (!session_) open();
    if (session_) session_->say(std::move(text));
  }

  void open() {
    session_ = std::make_shared<Session>(executor_);
    session_->listen(
        [weak = weak_from_this()](TextNumber number, bool said) {
          if (const auto self = weak.lock()) self->end(number, said);
        },
        [weak = weak_from_this()] {
          if (const auto self = weak.lock()) self->giveUpAll();
        });
    dialling_ = std::make_shared<Dialling>(executor_,
                                           [weak = weak_from_this()](std::optional<Socket> socket) {
                                             if (const auto self = weak.lock())
                                               self->connected(std::move(socket));
                                           });
    dialling_->begin();
  }

  void connected(std::optional<Socket> socket) {
    dialling_.reset();
    if (socket)
      session_->begin(*std::move(socket));
    else
      giveUpAll();
  }

  /// There is no daemon: the next text looks for another one.
  void giveUpAll() {
    session_.reset();
    endAll();
  }

  void giveUpAt(PendingTexts::Time deadline, TextNumber number) {
    auto timer = std::make_shared<asio::steady_timer>(executor_, deadline);
    timer->async_wait([timer, weak = weak_from_this(), number](const auto& cancelled) {
      const auto self = weak.lock();
      if (!self || cancelled) return;
      if (self->session_) self->session_->forget(number);
      self->end(number, false);
    });
  }

  void end(TextNumber number, bool said) {
    report(pending_.with([=](PendingTexts& pending) { return pending.take(number); }), said);
  }

  void endAll() {
    const auto ended = pending_.with([](PendingTexts& pending) { return pending.takeAll(); });
    for (const auto& onEnd : ended) report(onEnd, false);
  }

  WorkerPool thread_{1};
  asio::any_io_executor executor_ = thread_.executor();
  Guarded<PendingTexts> pending_;
  // Used on the thread only.
  std::shared_ptr<Session> session_;
  std::shared_ptr<Dialling> dialling_;  ///< While the session has no daemon yet.
};

class SpeechdSynthesizer final : public SpeechSynthesizer {
 public:
  explicit SpeechdSynthesizer(const SpeechPatience& patience) : patience_(patience) {}
  ~SpeechdSynthesizer() override { speech_->close().wait_for(kMaxSpeechClose); }

  void speak(SpeechUtterance utterance) override {
    speech_->speak(std::move(utterance), patience_);
  }
  void stopSpeaking() override { speech_->stop(); }

 private:
  SpeechPatience patience_;
  std::shared_ptr<Speech> speech_ = std::make_shared<Speech>();
};

}  // namespace

std::unique_ptr<SpeechSynthesizer> SpeechdSynthesizerFactory::makeSynthesizer() {
  return std::make_unique<SpeechdSynthesizer>(patience_);
}

}  // namespace zelvora
