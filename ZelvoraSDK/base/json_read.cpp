#include <ZelvoraSDK/base/json_read.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/limits.h>
#include <ZelvoraSDK/base/text.h>

#include <boost/json/basic_parser_impl.hpp>
#include <boost/json/monotonic_resource.hpp>
#include <boost/json/value_stack.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <utility>

namespace zelvora {
namespace {

namespace json = boost::json;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Builds the tree from the parser's events. The parser's own doubles may be off by a unit in the
/// last place, so each is read again from its text.
class TreeBuilder {
 public:
  static constexpr std::size_t max_object_size = json::object::max_size();
  static constexpr std::size_t max_array_size = json::array::max_size();
  static constexpr std::size_t max_key_size = json::string::max_size();
  static constexpr std::size_t max_string_size = json::string::max_size();

  explicit TreeBuilder(json::storage_ptr storage) { stack_.reset(std::move(storage)); }

  json::value release() { return stack_.release(); }

  bool on_document_begin(json::error_code&) { return true; }
  bool on_document_end(json::error_code&) { return true; }
  bool on_object_begin(json::error_code&) { return true; }
  bool on_object_end(std::size_t size, json::error_code&) {
    stack_.push_object(size);
    return true;
  }
  bool on_array_begin(json::error_code&) { return true; }
  bool on_array_end(std::size_t size, json::error_code&) {
    stack_.push_array(size);
    return true;
  }
  bool on_key_part(json::string_view part, std::size_t, json::error_code&) {
    stack_.push_chars(part);
    return true;
  }
  bool on_key(json::string_view rest, std::size_t, json::error_code&) {
    stack_.push_key(rest);
    return true;
  }
  bool on_string_part(json::string_view part, std::size_t, json::error_code&) {
    stack_.push_chars(part);
    return true;
  }
  bool on_string(json::string_view rest, std::size_t, json::error_code&) {
    stack_.push_string(rest);
    return true;
  }
  bool on_number_part(json::string_view, json::error_code&) { return true; }
  bool on_int64(std::int64_t value, json::string_view, json::error_code&) {
    stack_.push_int64(value);
    return true;
  }
  bool on_uint64(std::uint64_t value, json::string_view, json::error_code&) {
    stack_.push_uint64(value);
    return true;
  }
  bool on_double(double nearly, json::string_view text, json::error_code& failure) {
    double exact = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), exact);
    if (read.ec == std::errc::result_out_of_range) {
      if (std::abs(nearly) >= 1) {
        failure = json::make_error_code(json::error::exponent_overflow);
        return false;
      }
      exact = std::copysign(0.0, nearly);
    }
    stack_.push_double(exact);
    return true;
  }
  bool on_bool(bool value, json::error_code&) {
    stack_.push_bool(value);
    return true;
  }
  bool on_null(json::error_code&) {
    stack_.push_null();
    return true;
  }
  bool on_comment_part(json::string_view, json::error_code&) { return true; }
  bool on_comment(json::string_view, json::error_code&) { return true; }

 private:
  json::value_stack stack_;
};

/// "line 3, column 14", counted in code points from 1.
std::string placeOf(std::string_view bytes, std::size_t offset) {
  const std::string_view before = bytes.substr(0, offset);
  const auto line = 1 + std::ranges::count(before, '\n');
  const std::string_view row = before.substr(before.rfind('\n') + 1);
  const auto column = 1 + std::ranges::count_if(row, [](char c) {
                        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
                      });
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

/// Names what stands at the start of `rest` but is not allowed there.
std::string describeUnexpected(std::string_view rest) {
  if (rest.empty()) return "unexpected end of the document";
  const DecodedCodePoint point = firstCodePoint(rest);
  const std::string_view text = rest.substr(0, point.length);
  if (!isValidUtf8(text)) return "invalid UTF-8";
  if (point.value > ' ' && point.value != 0x7F) return "unexpected '" + std::string(text) + "'";
  char name[16];
  std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(point.value));
  return std::string("unexpected character ") + name;
}

/// Whether `before` ends in an escaped leading surrogate, perhaps followed by the next backslash.
bool endsInLeadingSurrogate(std::string_view before) {
  if (before.ends_with('\\')) before.remove_suffix(1);
  if (before.size() < 6) return false;
  const std::string escape = lowercased(before.substr(before.size() - 6));
  return escape.starts_with("\\ud") && escape[3] >= '8' && escape[3] <= 'b';
}

struct Failure {
  JsonErrorCode code;
  std::string what;
};

Failure explain(const json::error_code& code, std::string_view text, std::size_t offset) {
  const std::string_view rest = text.substr(offset);
  using enum JsonErrorCode;
  if (code == json::error::too_deep)
    return {tooDeep, "nested deeper than " + std::to_string(kMaxJsonDepth) + " levels"};
  if (code == json::error::exponent_overflow) return {numberOutOfRange, "number out of range"};
  if (code == json::error::incomplete) return {syntax, describeUnexpected({})};
  if (code == json::error::extra_data)
    return {syntax, describeUnexpected(rest) + " after the end of the document"};
  const bool loneSurrogate = code == json::error::illegal_leading_surrogate ||
                             code == json::error::illegal_trailing_surrogate ||
                             endsInLeadingSurrogate(text.substr(0, offset));
  if (loneSurrogate) return {syntax, "lone surrogate"};
  if (code == json::error::syntax) return {syntax, describeUnexpected(rest)};
  return {syntax, code.message()};
}

[[noreturn]] void failJson(JsonErrorCode code, std::string description) {
  throw Error(std::string(kJsonErrorDomain), static_cast<int>(code), std::move(description));
}

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

/// Whether the conversion to std::int64_t is exact.
bool fitsInt64(double value) {
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  return std::trunc(value) == value && value >= -kLimit && value < kLimit;
}

void write(JsonWriter& out, const json::value& value);

void write(JsonWriter& out, const json::array& elements) {
  out.beginArray();
  for (const json::value& element : elements) write(out, element);
  out.endArray();
}

void write(JsonWriter& out, const json::object& members) {
  out.beginObject();
  for (const auto& member : members) {
    out.key({member.key().data(), member.key().size()});
    write(out, member.value());
  }
  out.endObject();
}

void write(JsonWriter& out, const json::value& value) {
  switch (value.kind()) {
    case json::kind::null: return out.null();
    case json::kind::bool_: return out.boolean(value.get_bool());
    case json::kind::int64:
    case json::kind::uint64:
    case json::kind::double_: return out.number(value.to_number<double>());
    case json::kind::string:
      return out.string({value.get_string().data(), value.get_string().size()});
    case json::kind::array: return write(out, value.get_array());
    case json::kind::object: return write(out, value.get_object());
  }
}

std::string_view withoutByteOrderMark(std::string_view bytes) {
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  return bytes;
}

json::value parseTree(std::string_view text, json::storage_ptr storage) {
  json::parse_options options;
  options.max_depth = kMaxJsonDepth;
  json::basic_parser<TreeBuilder> parser(options, std::move(storage));
  json::error_code failure;
  const std::size_t used = parser.write_some(false, text.data(), text.size(), failure);
  if (!failure && used < text.size()) failure = json::make_error_code(json::error::extra_data);
  if (failure) {
    const Failure why = explain(failure, text, used);
    failJson(why.code, placeOf(text, used) + ": " + why.what);
  }
  return parser.handler().release();
}

}  // namespace

struct JsonDocument::Tree {
  explicit Tree(std::string_view text)
      : arena(std::max<std::size_t>(text.size(), 1024)), root(parseTree(text, &arena)) {}

  json::monotonic_resource arena;
  json::value root;
};

JsonDocument::JsonDocument(std::unique_ptr<const Tree> tree) : tree_(std::move(tree)) {}
JsonDocument::JsonDocument(JsonDocument&&) noexcept = default;
JsonDocument& JsonDocument::operator=(JsonDocument&&) noexcept = default;
JsonDocument::~JsonDocument() = default;

const json::value& JsonDocument::root() const { return tree_->root; }

JsonDocument parseJson(std::string_view bytes) {
  if (bytes.size() > kMaxJsonBytes)
    failJson(JsonErrorCode::tooLarge, "the document has " + std::to_string(bytes.size()) +
                                          " bytes, more than the " + std::to_string(kMaxJsonBytes) +
                                          " allowed");
  return JsonDocument(std::make_unique<const JsonDocument::Tree>(withoutByteOrderMark(bytes)));
}

void writeJson(JsonWriter& out, const JsonDocument& document) { write(out, document.root()); }

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
  std::string description = path();
  if (description.empty()) description = "the document";
  description += ": ";
  description += what;
  failJson(code, std::move(description));
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
