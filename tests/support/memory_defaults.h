#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora::testing {

/// User defaults that live in memory and fail when told to. Not thread-safe.
class MemoryDefaults final : public UserDefaults {
 public:
  std::map<std::string, std::int64_t> values;
  bool fails = false;
  int calls = 0;

  std::int64_t integer(const std::string& key) override {
    use();
    const auto at = values.find(key);
    return at == values.end() ? 0 : at->second;
  }

  std::int64_t increment(const std::string& key) override {
    use();
    std::int64_t& value = values[key];
    return value = std::max(value, std::int64_t{0}) + 1;
  }

  void removeAll(const std::string& prefix) override {
    use();
    std::erase_if(values, [&](const auto& entry) { return entry.first.starts_with(prefix); });
  }

 private:
  void use() {
    ++calls;
    if (fails) throw Error("Memory", 1, "the store is broken");
  }
};

}  // namespace zelvora::testing
