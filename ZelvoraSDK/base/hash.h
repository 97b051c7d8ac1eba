#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include <ZelvoraSDK/base/ordered_map.h>

namespace zelvora {

/// Gathers the hashes of a record's fields, one `add` a field in a fixed order.
class HashBuilder {
 public:
  template <class T>
  HashBuilder& add(const T& value) {
    return mix(std::hash<T>{}(value));
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

}  // namespace zelvora
