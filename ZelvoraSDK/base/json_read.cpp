#include <ZelvoraSDK/base/json_read.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>

#include <cmath>

namespace zelvora {
namespace {

namespace json = boost::json;

std::string_view kindName(const json::value& value) {
  switch (value.kind()) {
    case json::kind::null: return "null";
    case json::kind::bool_: return "bool";
    case json::kind::int64:
    case json::kind::uint64:
    case json::kind::double_: return "number";
    case json::kind::string: return "string";
    case json::kind::array: return "array";
    case json::kind::object: return "object";
  }
  return "value";
}

[[noreturn]] void throwAt(std::string path, JsonErrorCode code, std::string_view what) {
  std::string description = path.empty() ? "the document" : std::move(path);
  description += ": ";
  description += what;
  throw Error(std::string(kJsonErrorDomain), static_cast<int>(code), std::move(description));
}

/// Whether the conversion to std::int64_t is exact.
bool fitsInt64(double value) {
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  return std::trunc(value) == value && value >= -kLimit && value < kLimit;
}

}  // namespace

JsonCursor JsonCursor::child(std::string_view key) const {
  if (const json::value* found = object().if_contains({key.data(), key.size()}))
    return {*this, key, *found};
  const json::value none;
  JsonCursor(*this, key, none).fail(JsonErrorCode::keyNotFound, "required, but absent");
}

const json::value* JsonCursor::findPresent(std::string_view key) const {
  const json::value* found = object().if_contains({key.data(), key.size()});
  return found && !found->is_null() ? found : nullptr;
}

const json::array& JsonCursor::array() const {
  if (const json::array* elements = value_->if_array()) return *elements;
  failExpecting("Array");
}

const json::object& JsonCursor::object() const {
  if (const json::object* members = value_->if_object()) return *members;
  failExpecting("Object");
}

std::string JsonCursor::path() const {
  if (!parent_) return {};
  std::string path = parent_->path();
  if (isElement_) return path + "[" + std::to_string(index_) + "]";
  if (!path.empty()) path += '.';
  path += key_;
  return path;
}

void JsonCursor::fail(JsonErrorCode code, std::string_view what) const {
  throwAt(path(), code, what);
}

void JsonCursor::failExpecting(std::string_view type) const {
  std::string what = "expected ";
  what += type;
  what += ", found ";
  what += kindName(*value_);
  fail(JsonErrorCode::typeMismatch, what);
}

void readJson(const JsonCursor& in, bool& value) {
  const bool* found = in.value().if_bool();
  if (!found) in.failExpecting("Bool");
  value = *found;
}

void readJson(const JsonCursor& in, std::string& value) {
  const json::string* found = in.value().if_string();
  if (!found) in.failExpecting("String");
  value.assign(found->data(), found->size());
}

void readJson(const JsonCursor& in, double& value) {
  switch (in.value().kind()) {
    case json::kind::double_: value = in.value().get_double(); return;
    case json::kind::int64: value = static_cast<double>(in.value().get_int64()); return;
    case json::kind::uint64: value = static_cast<double>(in.value().get_uint64()); return;
    default: in.failExpecting("Double");
  }
}

void readJson(const JsonCursor& in, std::int64_t& value) {
  if (const std::int64_t* found = in.value().if_int64()) {
    value = *found;
    return;
  }
  if (!in.value().is_number()) in.failExpecting("Int");
  double number = 0;
  readJson(in, number);
  if (!in.value().is_double() || !fitsInt64(number))
    in.fail(JsonErrorCode::numberOutOfRange, "expected Int, found " + shortestDecimal(number));
  value = static_cast<std::int64_t>(number);
}

}  // namespace zelvora
