#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>
#include <type_traits>
#include <vector>

#include <ZelvoraSDK/base/ordered_map.h>

// A record lists its fields once, in a template beside it that is found by its argument:
//
//     template <class Visitor, RecordOf<Screen> Record>
//     void fields(Visitor&& visit, Record& screen) {
//       visit("id", screen.id);
//       visit("rank", Defaulted{screen.rank});
//     }
//
// Reading and writing JSON, hashing and describing follow from that list.

namespace zelvora {

/// `Record`, const or not.
template <class T, class Record>
concept RecordOf = std::same_as<std::remove_const_t<T>, Record>;

/// A field that keeps its own value when a document lacks it or has null.
template <class T>
struct Defaulted {
  T& field;
};
template <class T>
Defaulted(T&) -> Defaulted<T>;

/// Whether `fields` is declared for `Record`.
template <class Record>
concept HasFields =
    requires(Record& record) { fields([](std::string_view, const auto&) {}, record); };

/// Gathers the hashes of a record's fields.
class HashBuilder {
 public:
  template <class T>
  HashBuilder& add(const T& value) {
    return mix(std::hash<T>{}(value));
  }

  template <class T>
  HashBuilder& add(const std::optional<T>& value) {
    mix(value.has_value());
    return value ? add(*value) : *this;
  }

  template <class T>
  HashBuilder& add(const std::vector<T>& values) {
    mix(values.size());
    for (const T& value : values) add(value);
    return *this;
  }

  /// Entry by entry in a sum, because maps with equal entries are equal in any order.
  template <class T>
  HashBuilder& add(const OrderedMap<T>& map) {
    std::size_t sum = 0;
    for (const auto& [key, value] : map) sum += HashBuilder{}.add(key).add(value).hash();
    return mix(sum);
  }

  [[nodiscard]] std::size_t hash() const { return hash_; }

 private:
  HashBuilder& mix(std::size_t next) {
    hash_ ^= next + 0x9E3779B97F4A7C15u + (hash_ << 6) + (hash_ >> 2);
    return *this;
  }

  std::size_t hash_ = 0;
};

template <HasFields Record>
[[nodiscard]] std::size_t hashOf(const Record& record) {
  HashBuilder builder;
  fields([&builder](std::string_view, const auto& value) { builder.add(value); }, record);
  return builder.hash();
}

}  // namespace zelvora
