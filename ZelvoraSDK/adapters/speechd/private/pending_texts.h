#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <utility>
#include <vector>

#include <ZelvoraSDK/adapters/speechd/private/conversation.h>

namespace zelvora::speechd {

/// The texts that have not ended. Each ends once: the caller that takes its handler calls it.
class PendingTexts {
 public:
  using Time = std::chrono::steady_clock::time_point;
  using OnEnd = std::function<void(bool said)>;

  struct Added {
    TextNumber number;
    Time deadline;  ///< One that comes after others has until after theirs.
  };
  Added add(OnEnd onEnd, Time now, std::chrono::steady_clock::duration allowance) {
    const Time begin = texts_.empty() ? now : std::max(now, lastDeadline_);
    lastDeadline_ = begin + allowance;
    texts_.emplace(++lastNumber_, std::move(onEnd));
    return {lastNumber_, lastDeadline_};
  }

  [[nodiscard]] bool contains(TextNumber number) const { return texts_.contains(number); }

  /// Empty when it has ended before.
  OnEnd take(TextNumber number) {
    auto text = texts_.extract(number);
    return text ? std::move(text.mapped()) : OnEnd();
  }

  std::vector<OnEnd> takeAll() {
    std::vector<OnEnd> all;
    for (auto& [number, onEnd] : texts_) all.push_back(std::move(onEnd));
    texts_.clear();
    return all;
  }

 private:
  std::map<TextNumber, OnEnd> texts_;
  TextNumber lastNumber_ = 0;
  Time lastDeadline_{};
};

}  // namespace zelvora::speechd
