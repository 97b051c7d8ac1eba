#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/json/value.hpp>

#include <ZelvoraSDK/base/json_fwd.h>
#include <ZelvoraSDK/base/ordered_map.h>
#include <ZelvoraSDK/base/record.h>

namespace zelvora {

/// A parsed document. Owns all of its tree in one arena, so moving and destroying it is cheap.
class JsonDocument {
 public:
  /// Valid as long as the document lives, wherever it is moved.
  [[nodiscard]] const boost::json::value& root() const;

  JsonDocument(JsonDocument&&) noexcept;
  JsonDocument& operator=(JsonDocument&&) noexcept;
  ~JsonDocument();

 private:
  friend JsonDocument parseJson(std::string_view bytes);
  struct Tree;
  explicit JsonDocument(std::unique_ptr<const Tree> tree);

  std::unique_ptr<const Tree> tree_;
};

/// Parses a whole document of any kind, scalars included. Skips a byte-order mark; of duplicate
/// keys the last value counts, at the place of the first. Bounded by `kMaxJsonBytes` and
/// `kMaxJsonDepth`. Doubles are the nearest to what is
/// written; a number too small for one is 0. Throws Error in `kJsonErrorDomain`.
[[nodiscard]] JsonDocument parseJson(std::string_view bytes);

/// The document in compact form, its keys in their order. All numbers are written as doubles.
void writeJson(JsonWriter& out, const JsonDocument& document);

/// A place in a parsed document, and how it was reached. A cursor borrows the tree, its parent
/// cursor and its key, so it must not outlive them; the coding path costs nothing until something
/// is wrong.
///
/// Readable are bool, std::string, double, std::int64_t, vectors and ordered maps of what is
/// readable, and records: those that list their `fields` (see record.h), and those with a
/// `void readJson(const JsonCursor&, Record&)` beside them. A std::optional may be absent or null,
/// a `Defaulted` field too; all others are required. Unknown keys are ignored. Every failure is an
/// Error in `kJsonErrorDomain` whose description starts with the coding path:
/// `tasks[3].keywords[0]: expected String, found number`.
class JsonCursor {
 public:
  explicit JsonCursor(const boost::json::value& root) : value_(&root) {}
  JsonCursor(const JsonCursor& parent, std::string_view key, const boost::json::value& value)
      : value_(&value), parent_(&parent), key_(key) {}
  JsonCursor(const JsonCursor& parent, std::size_t index, const boost::json::value& value)
      : value_(&value), parent_(&parent), index_(index), isElement_(true) {}

  [[nodiscard]] const boost::json::value& value() const { return *value_; }

  /// This value as a T.
  template <class T>
  [[nodiscard]] T as() const {
    T result{};
    readJson(*this, result);
    return result;
  }

  template <class T>
  [[nodiscard]] T required(std::string_view key) const {
    T result{};
    read(key, result);
    return result;
  }

  /// Absent when the key is missing or null.
  template <class T>
  [[nodiscard]] std::optional<T> optional(std::string_view key) const {
    std::optional<T> result;
    read(key, result);
    return result;
  }

  template <class T>
  void read(std::string_view key, T& field) const {
    readJson(child(key), field);
  }

  template <class T>
  void read(std::string_view key, std::optional<T>& field) const {
    const auto* found = findPresent(key);
    // emplace() without arguments fails in clang for records nested in a class that was still open
    // when this optional was named in it.
    if (found) readJson(JsonCursor(*this, key, *found), field.emplace(T{}));
  }

  template <class T>
  void read(std::string_view key, Defaulted<T> defaulted) const {
    readIfPresent(key, defaulted.field);
  }

  /// Leaves `field` as it is when the key is missing or null.
  template <class T>
  void readIfPresent(std::string_view key, T& field) const {
    if (const auto* found = findPresent(key)) readJson(JsonCursor(*this, key, *found), field);
  }

  /// The place of a required key.
  [[nodiscard]] JsonCursor child(std::string_view key) const;

  /// The place of a key; absent when it is missing or null.
  [[nodiscard]] std::optional<JsonCursor> find(std::string_view key) const {
    const auto* found = findPresent(key);
    return found ? std::optional<JsonCursor>(std::in_place, *this, key, *found) : std::nullopt;
  }

  [[nodiscard]] const boost::json::array& array() const;
  [[nodiscard]] const boost::json::object& object() const;

  /// "tasks[3].keywords[0]"; empty at the root.
  [[nodiscard]] std::string path() const;

  /// Throws with the coding path before `what`.
  [[noreturn]] void fail(JsonErrorCode code, std::string_view what) const;
  /// Throws "expected `type`, found …".
  [[noreturn]] void failExpecting(std::string_view type) const;

 private:
  [[nodiscard]] const boost::json::value* findPresent(std::string_view key) const;

  const boost::json::value* value_;
  const JsonCursor* parent_ = nullptr;
  std::string_view key_;
  std::size_t index_ = 0;
  bool isElement_ = false;
};

void readJson(const JsonCursor& in, bool& value);
void readJson(const JsonCursor& in, std::string& value);
/// An integer literal is a double too.
void readJson(const JsonCursor& in, double& value);
/// Takes 4.0; refuses 4.5 and what does not fit.
void readJson(const JsonCursor& in, std::int64_t& value);

template <class T>
void readJson(const JsonCursor& in, std::vector<T>& values) {
  const boost::json::array& elements = in.array();
  values.clear();
  values.reserve(elements.size());
  for (const boost::json::value& element : elements) {
    const JsonCursor at(in, values.size(), element);
    readJson(at, values.emplace_back());
  }
}

template <class T>
void readJson(const JsonCursor& in, OrderedMap<T>& map) {
  const boost::json::object& members = in.object();
  std::vector<typename OrderedMap<T>::value_type> entries;
  entries.reserve(members.size());
  for (const auto& member : members) {
    const std::string_view key(member.key().data(), member.key().size());
    T& value = entries.emplace_back(key, T{}).second;
    readJson(JsonCursor(in, key, member.value()), value);
  }
  map = OrderedMap<T>::fromUniqueEntries(std::move(entries));
}

/// Reads every field that `fields` lists.
template <HasFields Record>
void readFields(const JsonCursor& in, Record& record) {
  fields([&in](std::string_view key, auto&& field) { in.read(key, field); }, record);
}

template <HasFields Record>
void readJson(const JsonCursor& in, Record& record) {
  readFields(in, record);
}

/// Parses `bytes` and reads the document as a T.
template <class T>
[[nodiscard]] T decodeJson(std::string_view bytes) {
  const JsonDocument document = parseJson(bytes);
  return JsonCursor(document.root()).as<T>();
}

}  // namespace zelvora
