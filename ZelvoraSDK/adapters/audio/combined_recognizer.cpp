#include <ZelvoraSDK/adapters/audio/combined_recognizer.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <optional>
#include <utility>

#include <ZelvoraSDK/adapters/audio/private/confidence.h>
#include <ZelvoraSDK/async/guarded.h>

namespace zelvora {
namespace {

/// From this confidence on a result wins alone: the default minimum of the façade.
constexpr double kEnough = 0.65;
/// In log odds: agreement adds the first to the weaker result before it supports the stronger one;
/// disagreement takes the second off the stronger one.
constexpr double kAgreement = 0.7;
constexpr double kDisagreement = 0.5;

double confidenceOf(const SpeechResult& result) {
  double sum = 0;
  for (const SpeechSegment& word : result.segments) sum += word.confidence;
  return result.segments.empty() ? 0 : sum / static_cast<double>(result.segments.size());
}

double logOdds(double chance) {
  const double inside = std::clamp(chance, 0.001, 0.999);
  return std::log(inside / (1 - inside));
}

SpeechResult withLogOdds(SpeechResult result, double odds) {
  audio::setMeanConfidence(result.segments, 1 / (1 + std::exp(-odds)));
  return result;
}

/// The two tasks of one capture, and what they said. Their handlers keep it alive.
class Pair {
 public:
  Pair(SpeechRecognizer::Handler handler, OpenedBy openedBy) : openedBy_(std::move(openedBy)) {
    state_.with([&](State& state) { state.handler = std::move(handler); });
  }

  static SpeechRecognizer::Handler handlerOf(const std::shared_ptr<Pair>& pair, std::size_t which) {
    return {
        .onResult = [pair, which](SpeechResult result) { pair->take(which, std::move(result)); },
        .onError = [pair, which](Error error) { pair->fail(which, std::move(error)); }};
  }

  /// From now on the final result is kept for `last`.
  void beginFinish() {
    state_.with([](State& state) { state.isFinishing = true; });
  }
  /// Takes a task's final result; absent when it came too late.
  void end(std::size_t which, std::optional<SpeechResult> result) {
    if (!result) return;
    state_.with([&](State& state) {
      state.finals.at(which) = std::move(result);
      reportOnce(state);
    });
  }
  /// The final result, unless the handler already has it. The handler is not called after that.
  std::optional<SpeechResult> last() {
    return state_.with([this](State& state) -> std::optional<SpeechResult> {
      state.handler = {};
      if (state.last || std::exchange(state.isReported, true)) return std::move(state.last);
      if (!state.finals[0] && !state.finals[1]) return std::nullopt;
      return answer(state);
    });
  }

  /// The handler is not called after that.
  void abandon() {
    state_.with([](State& state) { state.handler = {}; });
  }

 private:
  struct State {
    SpeechRecognizer::Handler handler;
    std::array<std::optional<SpeechResult>, 2> finals;
    std::array<std::optional<Error>, 2> errors;
    std::optional<SpeechResult> last;
    bool isFinishing = false;
    bool isReported = false;
  };

  void take(std::size_t which, SpeechResult result) {
    state_.with([&](State& state) {
      if (result.isFinal) state.finals.at(which) = std::move(result);
      // Once the first recogniser has failed, the other's partial results are shown.
      else if ((which == 0 || state.errors.at(0)) && state.handler.onResult)
        state.handler.onResult(std::move(result));
      reportOnce(state);
    });
  }

  void fail(std::size_t which, Error error) {
    state_.with([&](State& state) {
      state.errors.at(which) = std::move(error);
      reportOnce(state);
    });
  }

  void reportOnce(State& state) {
    for (std::size_t i = 0; i < 2; ++i)
      if (!state.finals.at(i) && !state.errors.at(i)) return;
    if (std::exchange(state.isReported, true)) return;
    if (state.errors[0] && state.errors[1]) {
      if (state.handler.onError) state.handler.onError(*state.errors[0]);
    } else if (state.isFinishing) {
      state.last = answer(state);
    } else if (state.handler.onResult) {
      state.handler.onResult(answer(state));
    }
  }

  [[nodiscard]] SpeechResult answer(State& state) const {
    if (!state.finals[0]) return *state.finals[1];
    if (!state.finals[1]) return *state.finals[0];
    return combined(opinionOf(*state.finals[0]), opinionOf(*state.finals[1]));
  }

  [[nodiscard]] Opinion opinionOf(const SpeechResult& result) const {
    return {.result = result, .opens = openedBy_ ? openedBy_(result.text) : result.text};
  }

  Guarded<State> state_;
  OpenedBy openedBy_;
};

class CombinedTask final : public SpeechRecognitionTask {
 public:
  CombinedTask(SpeechRecognizer& first, SpeechRecognizer& second, bool reportPartialResults,
               std::shared_ptr<Pair> pair)
      : pair_(std::move(pair)),
        first_(first.startTask(reportPartialResults, Pair::handlerOf(pair_, 0))),
        second_(second.startTask(reportPartialResults, Pair::handlerOf(pair_, 1))) {}

  ~CombinedTask() override { pair_->abandon(); }

  void append(const PcmBuffer& buffer) override {
    first_->append(buffer);
    second_->append(buffer);
  }
  void endAudio() override {
    first_->endAudio();
    second_->endAudio();
  }
  std::optional<SpeechResult> finish(Seconds limit) override {
    const auto end = std::chrono::steady_clock::now() + limit;
    pair_->beginFinish();
    // Both decode their last sound at the same time.
    endAudio();
    pair_->end(0, first_->finish(limit));
    const Seconds left = end - std::chrono::steady_clock::now();
    pair_->end(1, second_->finish(std::max(left, Seconds{0})));
    return pair_->last();
  }

 private:
  std::shared_ptr<Pair> pair_;
  std::unique_ptr<SpeechRecognitionTask> first_;
  std::unique_ptr<SpeechRecognitionTask> second_;
};

class CombinedRecognizer final : public SpeechRecognizer {
 public:
  CombinedRecognizer(std::unique_ptr<SpeechRecognizer> first,
                     std::unique_ptr<SpeechRecognizer> second, OpenedBy openedBy)
      : first_(std::move(first)), second_(std::move(second)), openedBy_(std::move(openedBy)) {}

  [[nodiscard]] bool isAvailable() const override {
    return first_->isAvailable() || second_->isAvailable();
  }

  std::unique_ptr<SpeechRecognitionTask> startTask(bool reportPartialResults,
                                                   Handler handler) override {
    if (!first_->isAvailable()) return second_->startTask(reportPartialResults, std::move(handler));
    if (!second_->isAvailable()) return first_->startTask(reportPartialResults, std::move(handler));
    return std::make_unique<CombinedTask>(*first_, *second_, reportPartialResults,
                                          std::make_shared<Pair>(std::move(handler), openedBy_));
  }

 private:
  std::unique_ptr<SpeechRecognizer> first_;
  std::unique_ptr<SpeechRecognizer> second_;
  OpenedBy openedBy_;
};

}  // namespace

SpeechResult combined(Opinion first, Opinion second) {
  const double firstChance = confidenceOf(first.result);
  const double secondChance = confidenceOf(second.result);
  const bool isFirstBetter = firstChance >= secondChance;
  SpeechResult& better = isFirstBetter ? first.result : second.result;
  if (first.opens.empty() && second.opens.empty()) return std::move(better);
  const auto [less, more] = std::minmax({logOdds(firstChance), logOdds(secondChance)});
  if (first.opens == second.opens)
    return withLogOdds(std::move(better), more + std::max(0.0, less + kAgreement));
  if (!first.opens.empty() && !second.opens.empty())
    return withLogOdds(std::move(better), more - kDisagreement);
  SpeechResult& opening = second.opens.empty() ? first.result : second.result;
  const double chance = second.opens.empty() ? firstChance : secondChance;
  return std::move(chance >= kEnough ? opening : better);
}

CombinedRecognizerFactory::CombinedRecognizerFactory(
    std::shared_ptr<SpeechRecognizerFactory> first, std::shared_ptr<SpeechRecognizerFactory> second)
    : first_(std::move(first)), second_(std::move(second)) {}

std::unique_ptr<SpeechRecognizer> CombinedRecognizerFactory::makeRecognizer(
    const std::string& locale) {
  return makeRecognizerFor({.locale = locale});
}

std::unique_ptr<SpeechRecognizer> CombinedRecognizerFactory::makeRecognizerFor(
    const RecognitionRequest& request) {
  auto first = first_->makeRecognizerFor(request);
  auto second = second_->makeRecognizerFor(request);
  if (!first) return second;
  if (!second) return first;
  return std::make_unique<CombinedRecognizer>(std::move(first), std::move(second),
                                              request.openedBy);
}

void CombinedRecognizerFactory::prepare(const RecognitionRequest& request) {
  first_->prepare(request);
  second_->prepare(request);
}

void CombinedRecognizerFactory::release() {
  first_->release();
  second_->release();
}

namespace {

class WordlessTask final : public SpeechRecognitionTask {
 public:
  explicit WordlessTask(SpeechRecognizer::Handler handler) : handler_(std::move(handler)) {}

  void append(const PcmBuffer& buffer) override {
    const auto loudness = level(buffer);
    if (!loudness || *loudness < kVoiceLevel) return;
    // Inside the lock, so that nothing is reported after `finish` has returned.
    handler_.with([](SpeechRecognizer::Handler& handler) {
      if (const auto report = std::exchange(handler.onResult, nullptr)) report(SpeechResult{});
    });
  }
  void endAudio() override {
    handler_.with([](SpeechRecognizer::Handler& handler) { handler = {}; });
  }
  std::optional<SpeechResult> finish(Seconds /*limit*/) override {
    endAudio();
    return std::nullopt;
  }

 private:
  Guarded<SpeechRecognizer::Handler> handler_;
};

class WordlessRecognizer final : public SpeechRecognizer {
 public:
  [[nodiscard]] bool isAvailable() const override { return true; }
  std::unique_ptr<SpeechRecognitionTask> startTask(bool /*reportPartialResults*/,
                                                   Handler handler) override {
    return std::make_unique<WordlessTask>(std::move(handler));
  }
};

}  // namespace

std::unique_ptr<SpeechRecognizer> WordlessFallbackFactory::makeRecognizer(
    const std::string& locale) {
  return makeRecognizerFor({.locale = locale});
}

std::unique_ptr<SpeechRecognizer> WordlessFallbackFactory::makeRecognizerFor(
    const RecognitionRequest& request) {
  auto recognizer = recognizers_->makeRecognizerFor(request);
  if (request.isTextNeeded || (recognizer && recognizer->isAvailable())) return recognizer;
  return std::make_unique<WordlessRecognizer>();
}

}  // namespace zelvora
