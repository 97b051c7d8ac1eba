#include <ZelvoraSDK/adapters/speechd/speechd_synthesizer.h>

#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <future>
#include <utility>

#include <ZelvoraSDK/adapters/speechd/private/pending_texts.h>
#include <ZelvoraSDK/adapters/speechd/private/session.h>
#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/async/worker_pool.h>

namespace zelvora {
namespace {

using speechd::PendingTexts;
using speechd::Session;
using speechd::TextNumber;
using SteadyClock = std::chrono::steady_clock;

/// The longest that a destructor waits for the conversation to end.
constexpr std::chrono::seconds kCloseBound{1};

void tell(const PendingTexts::OnEnd& onEnd, bool said) {
  if (onEnd) onEnd(said);
}

/// The texts and the conversation, which lives on the one thread. Public calls from any thread.
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
      self->say(added.number, text);
    });
  }

  void stop() {
    endAll();
    asio::post(executor_, [self = shared_from_this()] {
      if (self->session_) self->session_->cancel();
    });
  }

  /// Ready when the conversation has ended.
  std::future<void> close() {
    endAll();
    auto closed = std::make_shared<std::promise<void>>();
    asio::post(executor_, [self = shared_from_this(), closed]() mutable {
      if (const auto session = std::exchange(self->session_, nullptr)) session->close();
      self.reset();  // Whoever waits is the last to let go.
      closed->set_value();
    });
    return closed->get_future();
  }

 private:
  void say(TextNumber number, const SpeechUtterance& utterance) {
    // A text that was stopped before its turn is not begun.
    if (!pending_.with([=](const PendingTexts& pending) { return pending.contains(number); }))
      return;
    if (!session_) open();
    if (session_)
      session_->say(number, utterance);
    else
      end(number, false);
  }

  void open() {
    auto socket = speechd::connectToDaemon(executor_);
    if (!socket) return;
    const auto onEnd = [weak = weak_from_this()](TextNumber number, bool said) {
      if (const auto self = weak.lock()) self->end(number, said);
    };
    const auto onBroken = [weak = weak_from_this()] {
      const auto self = weak.lock();
      if (!self) return;
      self->session_.reset();
      self->endAll();
    };
    session_ = std::make_shared<Session>(*std::move(socket), onEnd, onBroken);
    session_->begin();
  }

  void giveUpAt(PendingTexts::Time deadline, TextNumber number) {
    auto timer = std::make_shared<asio::steady_timer>(executor_, deadline);
    timer->async_wait([timer, weak = weak_from_this(), number](const auto& cancelled) {
      if (const auto self = weak.lock(); self && !cancelled) self->end(number, false);
    });
  }

  void end(TextNumber number, bool said) {
    tell(pending_.with([=](PendingTexts& pending) { return pending.take(number); }), said);
  }

  void endAll() {
    const auto ended = pending_.with([](PendingTexts& pending) { return pending.takeAll(); });
    for (const auto& onEnd : ended) tell(onEnd, false);
  }

  WorkerPool thread_{1};
  asio::any_io_executor executor_ = thread_.executor();
  Guarded<PendingTexts> pending_;
  std::shared_ptr<Session> session_;
};

class SpeechdSynthesizer final : public SpeechSynthesizer {
 public:
  explicit SpeechdSynthesizer(const SpeechPatience& patience) : patience_(patience) {}
  ~SpeechdSynthesizer() override { speech_->close().wait_for(kCloseBound); }

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
