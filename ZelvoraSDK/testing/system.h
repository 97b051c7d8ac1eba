#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora::testing {

/// A clock that the test moves.
class ManualClock final : public Clock {
 public:
  Timestamp now() override {
    return now_.with([](Timestamp now) { return now; });
  }
  void pass(Seconds duration) {
    now_.with([=](Timestamp& now) { now += duration; });
  }

 private:
  Guarded<Timestamp> now_{Timestamp(Seconds{1000})};
};

/// Keeps the lines.
class RecordingLog final : public LogSink {
 public:
  void write(std::string_view line) override {
    lines_.with([line](auto& lines) { lines.emplace_back(line); });
  }
  [[nodiscard]] std::vector<std::string> lines() const {
    return lines_.with([](const auto& lines) { return lines; });
  }

 private:
  Guarded<std::vector<std::string>> lines_;
};

/// User defaults that live in memory and fail when the test says so.
class MemoryDefaults final : public UserDefaults {
 private:
  struct State {
    std::map<std::string, std::int64_t> values;
    bool isBroken = false;
    int calls = 0;
  };

  template <class Operation>
  auto use(Operation operation) {
    return state_.with([&](State& state) {
      ++state.calls;
      if (state.isBroken) throw Error("Memory", 1, "the store is broken");
      return operation(state.values);
    });
  }

 public:
  /// From now on every operation throws.
  void breakDown() {
    state_.with([](State& state) { state.isBroken = true; });
  }
  void set(const std::string& key, std::int64_t value) {
    state_.with([&](State& state) { state.values[key] = value; });
  }
  [[nodiscard]] std::map<std::string, std::int64_t> values() const {
    return state_.with([](const State& state) { return state.values; });
  }
  /// Operations so far, those that failed included.
  [[nodiscard]] int calls() const {
    return state_.with([](const State& state) { return state.calls; });
  }

  std::int64_t integer(const std::string& key) override {
    return use([&](auto& values) {
      const auto at = values.find(key);
      return at == values.end() ? 0 : at->second;
    });
  }
  std::int64_t increment(const std::string& key) override {
    return use([&](auto& values) {
      std::int64_t& value = values[key];
      return value = std::max(value, std::int64_t{0}) + 1;
    });
  }
  void removeAll(const std::string& prefix) override {
    use([&](auto& values) {
      std::erase_if(values, [&](const auto& entry) { return entry.first.starts_with(prefix); });
    });
  }

 private:
  Guarded<State> state_;
};

/// An application bundle put together by hand. Not to be changed while it is in use.
class MemoryBundle final : public AppBundle {
 public:
  std::map<std::string, std::filesystem::path> resources;  ///< By "name.extension".
  std::map<std::string, std::string> strings;
  std::map<std::string, double> numbers;
  std::optional<std::string> id;

  [[nodiscard]] std::optional<std::filesystem::path> resource(
      const std::string& name, const std::string& extension) const override {
    return valueIn(resources, name + '.' + extension);
  }
  [[nodiscard]] std::optional<std::string> stringSetting(const std::string& key) const override {
    return valueIn(strings, key);
  }
  [[nodiscard]] std::optional<double> numberSetting(const std::string& key) const override {
    return valueIn(numbers, key);
  }
  [[nodiscard]] std::optional<std::string> identifier() const override { return id; }
  [[nodiscard]] std::string description() const override { return "a bundle in memory"; }

 private:
  template <class Value>
  static std::optional<Value> valueIn(const std::map<std::string, Value>& map,
                                      const std::string& key) {
    const auto at = map.find(key);
    return at == map.end() ? std::nullopt : std::optional(at->second);
  }
};

}  // namespace zelvora::testing
