#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zelvora {

/// A map from strings that keeps the order in which its keys first came. Meant for the small tables
/// of a spec: look-up is linear. Equality is that of maps: order does not count.
template <class Value>
class OrderedMap {
 public:
  using value_type = std::pair<std::string, Value>;
  using const_iterator = typename std::vector<value_type>::const_iterator;

  OrderedMap() = default;
  OrderedMap(std::initializer_list<value_type> entries) {
    for (const value_type& entry : entries) set(entry.first, entry.second);
  }

  /// REQUIRES: no two entries share a key.
  static OrderedMap fromUniqueEntries(std::vector<value_type> entries) {
    OrderedMap map;
    map.entries_ = std::move(entries);
    return map;
  }

  [[nodiscard]] const_iterator begin() const { return entries_.begin(); }
  [[nodiscard]] const_iterator end() const { return entries_.end(); }
  [[nodiscard]] bool empty() const { return entries_.empty(); }
  [[nodiscard]] std::size_t size() const { return entries_.size(); }

  /// The value under `key`, or null; valid until the map changes.
  [[nodiscard]] const Value* find(std::string_view key) const {
    for (const value_type& entry : entries_)
      if (entry.first == key) return &entry.second;
    return nullptr;
  }

  /// Replaces in place, so that an existing key keeps its position.
  void set(std::string key, Value value) {
    for (value_type& entry : entries_) {
      if (entry.first != key) continue;
      entry.second = std::move(value);
      return;
    }
    entries_.emplace_back(std::move(key), std::move(value));
  }

  friend bool operator==(const OrderedMap& a, const OrderedMap& b) {
    if (a.entries_ == b.entries_) return true;
    if (a.size() != b.size()) return false;
    for (const auto& [key, value] : a) {
      const Value* const other = b.find(key);
      if (!other || !(*other == value)) return false;
    }
    return true;
  }

 private:
  std::vector<value_type> entries_;
};

}  // namespace zelvora
