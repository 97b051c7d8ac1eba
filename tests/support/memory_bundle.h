#pragma once

#include <map>
#include <string>

#include <ZelvoraSDK/platform/system.h>

namespace zelvora::testing {

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
