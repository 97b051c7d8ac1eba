#pragma once

#include <map>
#include <string>
#include <string_view>

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
PropertyListEntries readPropertyList(std::string_view bytes);

}  // namespace zelvora
