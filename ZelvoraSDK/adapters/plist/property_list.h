#pragma once

#include <cstddef>
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

/// The largest property list that is read, in bytes. Those of real applications have a tenth of it.
constexpr std::size_t kMaxPropertyListBytes = std::size_t{1} << 20;
/// The deepest nesting of dictionaries and arrays that is read, the outermost included.
constexpr std::size_t kMaxPropertyListDepth = 64;

/// Reads a property list, XML or binary, whose top is a dictionary. Any bytes may be given: what is
/// malformed, larger or deeper throws Error in the domain "PropertyList". Text that is not UTF-8 is
/// repaired. Pure.
PropertyListEntries readPropertyList(std::string_view bytes);

}  // namespace zelvora
