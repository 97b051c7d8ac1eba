#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/audio/private/decoder_thread.h>
#include <ZelvoraSDK/async/guarded.h>

namespace zelvora::audio {

/// The decoders of a factory, one for each list of phrases that is in use. The last one asked for
/// is kept loaded until `release`, the others for as long as somebody holds them. Callable from any
/// thread.
class Decoders {
 public:
  using Phrases = std::vector<std::string>;
  using Load = std::function<std::unique_ptr<StreamDecoder>(const Phrases& phrases)>;

  /// `always` are phrases that every decoder expects.
  Decoders(Phrases always, Load load) : always_(std::move(always)), load_(std::move(load)) {}

  /// Not loaded yet, unless it was before.
  std::shared_ptr<DecoderThread> expecting(const Phrases& phrases) {
    Phrases all = always_;
    for (const std::string& phrase : phrases)
      if (std::ranges::find(always_, phrase) == always_.end()) all.push_back(phrase);
    return state_
        .with([&](State& state) {
          std::erase_if(state.inUse, [](const auto& entry) { return entry.second.expired(); });
          auto& held = state.inUse[all];
          auto thread = held.lock();
          if (!thread) {
            thread = std::make_shared<DecoderThread>([load = load_, all] { return load(all); });
            held = thread;
          }
          // What was the latest is destroyed by the caller, outside the lock.
          auto before = std::exchange(state.latest, thread);
          return std::pair(std::move(thread), std::move(before));
        })
        .first;
  }

  /// The last one asked for; null before the first and after `release`.
  [[nodiscard]] std::shared_ptr<DecoderThread> latest() {
    return state_.with([](const State& state) { return state.latest; });
  }

  /// A decoder that nobody uses is destroyed.
  void release() {
    // Outside the lock: a decoder's thread is waited for.
    const auto latest =
        state_.with([](State& state) { return std::exchange(state.latest, nullptr); });
  }

 private:
  struct State {
    std::map<Phrases, std::weak_ptr<DecoderThread>> inUse;
    std::shared_ptr<DecoderThread> latest;
  };

  const Phrases always_;
  const Load load_;
  Guarded<State> state_;
};

}  // namespace zelvora::audio
