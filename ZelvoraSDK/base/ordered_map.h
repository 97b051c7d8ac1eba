#pragma once

#include <algorithm>
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
    const auto at = std::ranges::find(entries_, key, &value_type::first);
    return at == entries_.end() ? nullptr : &at->second;
  }

  /// Replaces in place, so that an existing key keeps its position.
  void set(std::string key, Value value) {
    const auto at = std::ranges::find(entries_, key, &value_type::first);
    if (at == entries_.end())
      entries_.emplace_back(std::move(key), std::move(value));
    else
      at->second = std::move(value);
  }

  friend bool operator==(const OrderedMap& a, const OrderedMap& b) {
    if (a.entries_ == b.entries_) return true;
    if (a.size() != b.size()) return false;
    return sortedByKey(a) == sortedByKey(b);
  }

 private:
  static std::vector<value_type> sortedByKey(const OrderedMap& map) {
    std::vector<value_type> entries = map.entries_;
    std::ranges::sort(entries, {}, &value_type::first);
    return entries;
  }

  std::vector<value_type> entries_;
};

}  // namespace zelvora
