#pragma once

#include <charconv>
#include <concepts>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <ZelvoraSDK/base/json_fwd.h>
#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/base/ordered_map.h>
#include <ZelvoraSDK/base/record.h>

namespace zelvora {

/// Appends compact JSON to a string, keys in the order in which they are given.
///
///     JsonWriter out(text);
///     out.beginObject();
///     out.member("text", utterance);
///     out.member("locale", locale);  // left out when an absent std::optional
///     out.endObject();
///
/// Writable: bools, numbers, text, null pointers, vectors, ordered maps and optionals of what is
/// writable, and records: those that list their `fields` (see record.h), and those with a
/// `void writeJson(JsonWriter&, const Record&)` beside them. Doubles
/// are written in their shortest form, integral ones as integers; NaN and infinities throw an
/// Error. Text that is not UTF-8 is repaired with U+FFFD.
class ZELVORA_EXPORT JsonWriter {
 public:
  /// Appends to `out`, which must outlive the writer.
  explicit JsonWriter(std::string& out) : out_(out) {}

  void beginObject() { open('{'); }
  void endObject() { close('}'); }
  /// An object whose members `write(*this)` writes.
  template <std::invocable<JsonWriter&> Write>
  void object(const Write& write) {
    beginObject();
    write(*this);
    endObject();
  }
  void beginArray() { open('['); }
  void endArray() { close(']'); }

  /// REQUIRES: in an object; exactly one value follows.
  void key(std::string_view key);

  void null() { token("null"); }
  void boolean(bool value) { token(value ? "true" : "false"); }
  void number(double value);
  void string(std::string_view text);

  /// A whole value; an absent optional is null.
  template <class T>
  void value(const T& value);

  /// A key and its value; nothing at all for an absent optional.
  template <class T>
  void member(std::string_view name, const T& field) {
    key(name);
    value(field);
  }
  template <class T>
  void member(std::string_view name, const std::optional<T>& field) {
    if (field) member(name, *field);
  }

 private:
  template <std::integral T>
  void integer(T value) {
    char digits[24];
    const auto written = std::to_chars(digits, digits + sizeof digits, value);
    token({digits, written.ptr});
  }

  void separate() {
    if (needsComma_) out_ += ',';
    needsComma_ = true;
  }
  void token(std::string_view text) {
    separate();
    out_ += text;
  }
  void open(char bracket) {
    separate();
    out_ += bracket;
    needsComma_ = false;
  }
  void close(char bracket) {
    out_ += bracket;
    needsComma_ = true;
  }
  void quote(std::string_view text);

  std::string& out_;
  bool needsComma_ = false;
};

template <class T>
void writeJson(JsonWriter& out, const std::vector<T>& values) {
  out.beginArray();
  for (const T& value : values) out.value(value);
  out.endArray();
}

template <class T>
void writeJson(JsonWriter& out, const OrderedMap<T>& map) {
  out.beginObject();
  for (const auto& [key, value] : map) {
    out.key(key);
    out.value(value);
  }
  out.endObject();
}

template <class T>
void writeJson(JsonWriter& out, const std::optional<T>& value) {
  if (value)
    out.value(*value);
  else
    out.null();
}

template <HasFields Record>
void writeJson(JsonWriter& out, const Record& record) {
  out.object([&record](JsonWriter& members) {
    fields([&members](std::string_view name, const auto& field) { members.member(name, field); },
           record);
  });
}

template <class T>
void JsonWriter::value(const T& value) {
  if constexpr (std::is_same_v<T, bool>)
    boolean(value);
  else if constexpr (std::is_integral_v<T>)
    integer(value);
  else if constexpr (std::is_floating_point_v<T>)
    number(value);
  else if constexpr (std::is_same_v<T, std::nullptr_t>)
    null();
  else if constexpr (std::is_convertible_v<const T&, std::string_view>)
    string(value);
  else
    writeJson(*this, value);
}

/// The value as one compact document.
template <class T>
[[nodiscard]] std::string toJson(const T& value) {
  std::string text;
  JsonWriter(text).value(value);
  return text;
}

/// A compact document of one object, whose members `write(out)` writes.
template <std::invocable<JsonWriter&> Write>
[[nodiscard]] std::string jsonObject(const Write& write) {
  std::string text;
  JsonWriter(text).object(write);
  return text;
}

}  // namespace zelvora
