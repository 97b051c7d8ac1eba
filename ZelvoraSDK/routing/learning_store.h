#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// The choices with 0.03 of confidence for each time the user picked them, at most 0.15 and never
/// past 1, and the highest confidence first; equal ones keep their order. REQUIRES: a count for
/// each choice.
std::vector<ZelvoraChoice> boosted(std::vector<ZelvoraChoice> choices,
                                   const std::vector<std::int64_t>& counts);

/// Where an application's picks of a screen are counted. Choices without a screen share one count.
std::string learningKey(std::string_view appId, const std::optional<std::string>& screenId);

/// How often the user picked each screen, kept across runs. Never stops routing: a store that fails
/// costs one line in the log. One thread at a time. Blocks as long as its store does.
class LearningStore {
 public:
  LearningStore(std::shared_ptr<UserDefaults> defaults, std::shared_ptr<LogSink> log);

  /// Counts a pick and answers the new count; absent when the store could not be written.
  std::optional<std::int64_t> recordChoice(const std::string& appId, const std::string& screenId);

  /// Forgets the application's picks of every screen; false when the store could not be written.
  bool erase(const std::string& appId);

  /// The choices, boosted by their counts; when one can't be read, all count as 0.
  [[nodiscard]] std::vector<ZelvoraChoice> boost(const std::string& appId,
                                                 std::vector<ZelvoraChoice> choices) const;

 private:
  [[nodiscard]] std::vector<std::int64_t> counts(const std::string& appId,
                                                 const std::vector<ZelvoraChoice>& choices) const;

  std::shared_ptr<UserDefaults> defaults_;
  std::shared_ptr<LogSink> log_;
};

}  // namespace zelvora
