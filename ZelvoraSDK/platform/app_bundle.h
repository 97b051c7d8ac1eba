#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace zelvora {

/// The application's own files and settings. Immutable, callable from any thread.
class AppBundle {
 public:
  virtual ~AppBundle() = default;

  /// Where the resource `name`.`extension` lies; absent when there is none.
  [[nodiscard]] virtual std::optional<std::filesystem::path> resource(
      const std::string& name, const std::string& extension) const = 0;

  /// The property-list entry under `key` when it is a string.
  [[nodiscard]] virtual std::optional<std::string> stringSetting(const std::string& key) const = 0;

  /// The property-list entry under `key` when it is a number of any kind. A bool is none.
  [[nodiscard]] virtual std::optional<double> numberSetting(const std::string& key) const = 0;

  /// The identifier of the application; absent when it has none.
  [[nodiscard]] virtual std::optional<std::string> identifier() const = 0;

  /// For messages: the name or place of the bundle.
  [[nodiscard]] virtual std::string description() const = 0;
};

}  // namespace zelvora
