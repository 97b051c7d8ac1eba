#pragma once

#include <cstdio>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/platform/system.h>

// The ports that every application hands over, in their smallest form that keeps the promises of
// the headers in ZelvoraSDK/platform.

namespace porting {

/// The user interface's thread for the main actor, two threads for the rest.
class PhoneExecutors final : public zelvora::Executors {
 public:
  explicit PhoneExecutors(zelvora::asio::any_io_executor main) : main_(std::move(main)) {}

  zelvora::asio::any_io_executor main() override { return main_; }
  zelvora::asio::any_io_executor background() override { return pool_.executor(); }

 private:
  zelvora::asio::any_io_executor main_;
  zelvora::WorkerPool pool_{2};
};

/// Lines go to the phone's log; here to standard error.
class PhoneLog final : public zelvora::LogSink {
 public:
  void write(std::string_view line) override {
    const std::lock_guard lock(mutex_);
    std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
  }

 private:
  std::mutex mutex_;
};

/// A real one keeps its numbers when the process ends, and counts across processes.
class PhoneDefaults final : public zelvora::UserDefaults {
 public:
  std::int64_t integer(const std::string& key) override {
    const std::lock_guard lock(mutex_);
    const auto found = numbers_.find(key);
    return found == numbers_.end() ? 0 : found->second;
  }
  std::int64_t increment(const std::string& key) override {
    const std::lock_guard lock(mutex_);
    return ++numbers_[key];
  }
  void removeAll(const std::string& prefix) override {
    const std::lock_guard lock(mutex_);
    std::erase_if(numbers_, [&](const auto& entry) { return entry.first.starts_with(prefix); });
  }

 private:
  std::mutex mutex_;
  std::map<std::string, std::int64_t> numbers_;
};

/// The application's files lie in a folder, its settings in a map.
class PhoneBundle final : public zelvora::AppBundle {
 public:
  explicit PhoneBundle(std::filesystem::path folder) : folder_(std::move(folder)) {}

  [[nodiscard]] std::optional<std::filesystem::path> resource(
      const std::string& name, const std::string& extension) const override {
    const auto path = folder_ / (name + "." + extension);
    if (!std::filesystem::exists(path)) return std::nullopt;
    return path;
  }
  [[nodiscard]] std::optional<std::string> stringSetting(const std::string& key) const override {
    const auto found = settings_.find(key);
    if (found == settings_.end()) return std::nullopt;
    return found->second;
  }
  [[nodiscard]] std::optional<double> numberSetting(const std::string&) const override {
    return std::nullopt;
  }
  [[nodiscard]] std::optional<std::string> identifier() const override {
    return "com.example.porting";
  }
  [[nodiscard]] std::string description() const override { return folder_.string(); }

 private:
  std::filesystem::path folder_;
  std::map<std::string, std::string> settings_{{"ZelvoraPublishableKey", "demo"},
                                               {"ZelvoraLocale", "en-US"}};
};

}  // namespace porting
