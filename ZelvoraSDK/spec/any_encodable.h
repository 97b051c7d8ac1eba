#pragma once

#include <concepts>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <ZelvoraSDK/base/json_write.h>

namespace zelvora {

/// Any value that `JsonWriter` can write, owned, its type forgotten; written as the value itself.
/// Copies share the value, which nothing can change any more.
class AnyEncodable {
 public:
  template <class T>
    requires(!std::same_as<std::remove_cvref_t<T>, AnyEncodable>)
  explicit AnyEncodable(T&& value) : encode_(encoderOf<Owned<T>>(std::forward<T>(value))) {}

  friend void writeJson(JsonWriter& out, const AnyEncodable& any) { any.encode_(out); }

 private:
  /// Text is kept as a string: a literal's or a view's characters would not be owned.
  template <class T>
  using Owned = std::conditional_t<std::is_convertible_v<const T&, std::string_view>, std::string,
                                   std::remove_cvref_t<T>>;

  template <class Value, class T>
  static std::function<void(JsonWriter&)> encoderOf(T&& value) {
    auto kept = std::make_shared<const Value>(std::forward<T>(value));
    return [kept = std::move(kept)](JsonWriter& out) { out.value(*kept); };
  }

  std::function<void(JsonWriter&)> encode_;
};

}  // namespace zelvora
