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

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora::testing {

/// A clock that the test moves.
class ManualClock final : public Clock {
 public:
  Timestamp now() override {
    const std::scoped_lock lock(mutex_);
    return now_;
  }
  void pass(Seconds duration) {
    const std::scoped_lock lock(mutex_);
    now_ += duration;
  }

 private:
  std::mutex mutex_;
  Timestamp now_{Seconds{1000}};
};

/// Keeps the lines.
class RecordingLog final : public LogSink {
 public:
  void write(std::string_view line) override {
    const std::scoped_lock lock(mutex_);
    lines_.emplace_back(line);
  }
  [[nodiscard]] std::vector<std::string> lines() const {
    const std::scoped_lock lock(mutex_);
    return lines_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

/// User defaults that live in memory and fail when the test says so.
class MemoryDefaults final : public UserDefaults {
 public:
  /// From now on every operation throws.
  void breakDown() {
    const std::scoped_lock lock(mutex_);
    isBroken_ = true;
  }
  void set(const std::string& key, std::int64_t value) {
    const std::scoped_lock lock(mutex_);
    values_[key] = value;
  }
  [[nodiscard]] std::map<std::string, std::int64_t> values() const {
    const std::scoped_lock lock(mutex_);
    return values_;
  }
  /// Operations so far, those that failed included.
  [[nodiscard]] int calls() const {
    const std::scoped_lock lock(mutex_);
    return calls_;
  }

  std::int64_t integer(const std::string& key) override {
    const std::scoped_lock lock(mutex_);
    begin();
    const auto at = values_.find(key);
    return at == values_.end() ? 0 : at->second;
  }
  std::int64_t increment(const std::string& key) override {
    const std::scoped_lock lock(mutex_);
    begin();
    std::int64_t& value = values_[key];
    return value = std::max(value, std::int64_t{0}) + 1;
  }
  void removeAll(const std::string& prefix) override {
    const std::scoped_lock lock(mutex_);
    begin();
    std::erase_if(values_, [&](const auto& entry) { return entry.first.starts_with(prefix); });
  }

 private:
  /// Counts an operation.
  void begin() {
    ++calls_;
    if (isBroken_) throw Error("Memory", 1, "the store is broken");
  }

  mutable std::mutex mutex_;
  std::map<std::string, std::int64_t> values_;
  bool isBroken_ = false;
  int calls_ = 0;
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
