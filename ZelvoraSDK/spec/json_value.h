#pragma once

#include <concepts>
#include <cstddef>
#include <locale>
#include <optional>
#include <ostream>
#include <ranges>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <variant>
#include <vector>

#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/base/ordered_map.h>

namespace boost::json {
class value;
}

namespace zelvora {

/// A JSON document as a tree that owns itself, built from a parsed document or from C++ values.
/// Objects keep their order; all numbers are doubles. Written, never read: `toJson(tree)`.
class ZELVORA_EXPORT JSONValue {
 public:
  using Array = std::vector<JSONValue>;
  using Object = OrderedMap<JSONValue>;
  using Payload = std::variant<bool, double, std::string, Array, Object, std::nullptr_t>;

  JSONValue() : payload_(nullptr) {}

  explicit JSONValue(const boost::json::value& parsed);

  /// Null pointers and absent optionals become null. Bools, numbers and text stay what they are.
  /// Ranges of pairs that start with text become objects, other ranges arrays. Anything else
  /// becomes the text that it prints, or else the name of its type.
  template <class T>
    requires(!std::same_as<T, JSONValue> && !std::same_as<T, boost::json::value>)
  explicit JSONValue(const T& any) : payload_(payloadOf(any)) {}

  template <class T>
  static JSONValue from(const T& any) {
    return JSONValue(any);
  }

  [[nodiscard]] const Payload& payload() const { return payload_; }

  bool operator==(const JSONValue&) const = default;

 private:
  template <class T>
  static Payload payloadOf(const T& any);
  template <class T>
  static std::string describe(const T& any);

  Payload payload_;
};

/// Throws Error for NaN and infinities.
ZELVORA_EXPORT void writeJson(JsonWriter& out, const JSONValue& value);

template <class T>
JSONValue::Payload JSONValue::payloadOf(const T& any) {
  constexpr bool isMapLike = requires {
    { any.begin()->first } -> std::convertible_to<std::string_view>;
    any.begin()->second;
  };
  if constexpr (std::is_same_v<T, std::nullptr_t>)
    return nullptr;
  else if constexpr (std::is_same_v<T, bool>)
    return any;
  else if constexpr (std::is_arithmetic_v<T>)
    return static_cast<double>(any);
  else if constexpr (std::is_pointer_v<T> && std::is_convertible_v<const T&, std::string_view>)
    return any ? Payload(std::string(any)) : Payload(nullptr);
  else if constexpr (std::is_convertible_v<const T&, std::string_view>)
    return std::string(std::string_view(any));
  else if constexpr (isMapLike) {
    Object object;
    for (const auto& [key, value] : any) object.set(std::string(key), JSONValue(value));
    return object;
  } else if constexpr (std::ranges::input_range<const T>) {
    Array array;
    for (const std::ranges::range_value_t<T>& element : any) array.emplace_back(element);
    return array;
  } else if constexpr (requires {
                         any.has_value();
                         *any;
                       })
    return any.has_value() ? payloadOf(*any) : Payload(nullptr);
  else
    return describe(any);
}

template <class T>
std::string JSONValue::describe(const T& any) {
  if constexpr (requires(std::ostream& out) { out << any; }) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << any;
    return text.str();
  } else {
    return typeid(T).name();
  }
}

}  // namespace zelvora
