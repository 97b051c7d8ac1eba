#pragma once

#include <map>
#include <string>
#include <string_view>

#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// The entries of a property list that can be settings. A bool is neither.
struct PropertyListEntries {
  std::map<std::string, std::string> strings;
  std::map<std::string, double> numbers;  ///< Integers and finite reals.

  bool operator==(const PropertyListEntries&) const = default;
};

/// Reads a property list, XML or binary, whose top is a dictionary. Any bytes may be given: what is
/// malformed or passes a limit of base/limits.h throws Error in the domain "PropertyList". Text
/// that is not UTF-8 is repaired. Pure.
ZELVORA_EXPORT PropertyListEntries readPropertyList(std::string_view bytes);

/// An application bundle that is a folder: `Info.plist` holds the settings, and each other file
/// directly in it is a resource. Immutable, callable from any thread.
class ZELVORA_EXPORT PlistBundle final : public AppBundle {
 public:
  /// Reads the settings; a folder without `Info.plist` has none. Throws Error, with the path, when
  /// there is no such folder or its list can't be read.
  explicit PlistBundle(std::filesystem::path folder);

  /// A name or an extension never leads out of the folder.
  [[nodiscard]] std::optional<std::filesystem::path> resource(
      const std::string& name, const std::string& extension) const override;
  [[nodiscard]] std::optional<std::string> stringSetting(const std::string& key) const override;
  [[nodiscard]] std::optional<double> numberSetting(const std::string& key) const override;
  /// The setting "CFBundleIdentifier".
  [[nodiscard]] std::optional<std::string> identifier() const override;
  [[nodiscard]] std::string description() const override;

 private:
  std::filesystem::path folder_;
  PropertyListEntries entries_;
};

}  // namespace zelvora
