#pragma once

#include <span>
#include <string>
#include <string_view>

namespace zelvora::workbench {

/// What a value of the format is.
enum class SpecType {
  text,
  number,
  integer,
  boolean,
  lenientNumber,        ///< A number, or a bool or text that can be read as one.
  object,               ///< With the keys listed.
  objects,              ///< An array of those.
  texts,                ///< An array of text.
  textByName,           ///< Any names, each with a text.
  textsByName,          ///< Any names, each with an array of text.
  textByNameByLocale,   ///< A `textByName` for each locale.
  textsByNameByLocale,  ///< A `textsByName` for each locale.
};

/// One key of the spec format. The table is what the schema and the checks of keys are made from.
struct SpecKey {
  std::string_view name;
  SpecType type = SpecType::text;
  bool isRequired = false;
  std::string_view standard;  ///< The value that a missing key has, as JSON; "" without one.
  std::string_view description;
  std::span<const SpecKey> keys;  ///< Of an object, or of each of the objects.
  bool isByLocale = false;        ///< Its names are locale identifiers.
};

/// The keys of a full spec.
[[nodiscard]] std::span<const SpecKey> fullSpecKeys();
/// The keys that a minimal spec reads.
[[nodiscard]] std::span<const SpecKey> minimalSpecKeys();

}  // namespace zelvora::workbench

namespace zelvora {

/// The JSON Schema (2020-12) of the full spec file, for editors: types, descriptions, defaults, and
/// what is required. Refuses what decoding refuses; like decoding, it takes unknown keys.
[[nodiscard]] std::string specSchema();

}  // namespace zelvora
