#include <ZelvoraSDK/workbench/spec_schema.h>

#include <cstdint>
#include <limits>
#include <string_view>

#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/spec/json_value.h>
#include <ZelvoraSDK/workbench/private/spec_format.h>

namespace zelvora {
namespace {

using workbench::SpecKey;
using workbench::SpecType;

/// What the reader takes for a decimal number, with or without sign, fraction and exponent.
constexpr std::string_view kDecimal = R"(^[+-]?([0-9]+\.?[0-9]*|\.[0-9]+)([eE][+-]?[0-9]+)?$)";

/// An optional key may be null, which is the same as missing.
void writeType(JsonWriter& out, std::string_view type, bool mayBeNull) {
  out.key("type");
  if (!mayBeNull) return out.string(type);
  out.beginArray();
  out.string(type);
  out.string("null");
  out.endArray();
}

void writeObject(JsonWriter& out, std::span<const SpecKey> keys, bool mayBeNull);

/// An object with any names; `writeValue` writes the members of each value's schema.
template <class WriteValue>
void writeNames(JsonWriter& out, bool mayBeNull, const WriteValue& writeValue) {
  writeType(out, "object", mayBeNull);
  out.key("additionalProperties");
  out.beginObject();
  writeValue();
  out.endObject();
}

void writeTexts(JsonWriter& out, bool mayBeNull) {
  writeType(out, "array", mayBeNull);
  out.key("items");
  out.object([](JsonWriter& item) { item.member("type", "string"); });
}

void writeLenientNumber(JsonWriter& out) {
  out.key("anyOf");
  out.beginArray();
  out.object([](JsonWriter& each) { each.member("type", "number"); });
  out.object([](JsonWriter& each) { each.member("type", "boolean"); });
  out.object([](JsonWriter& each) {
    each.member("type", "string");
    each.member("pattern", kDecimal);
  });
  out.endArray();
}

void writeConstraints(JsonWriter& out, const SpecKey& key) {
  const bool mayBeNull = !key.isRequired;
  const auto text = [&] { out.member("type", "string"); };
  switch (key.type) {
    case SpecType::text: return writeType(out, "string", mayBeNull);
    case SpecType::number: return writeType(out, "number", mayBeNull);
    case SpecType::boolean: return writeType(out, "boolean", mayBeNull);
    case SpecType::integer:
      writeType(out, "integer", mayBeNull);
      out.member("minimum", std::numeric_limits<std::int64_t>::min());
      out.member("maximum", std::numeric_limits<std::int64_t>::max());
      return;
    case SpecType::lenientNumber: return writeLenientNumber(out);
    case SpecType::object: return writeObject(out, key.keys, mayBeNull);
    case SpecType::objects:
      writeType(out, "array", mayBeNull);
      out.key("items");
      out.beginObject();
      writeObject(out, key.keys, false);
      return out.endObject();
    case SpecType::texts: return writeTexts(out, mayBeNull);
    case SpecType::textByName: return writeNames(out, mayBeNull, text);
    case SpecType::textsByName: return writeNames(out, mayBeNull, [&] { writeTexts(out, false); });
    case SpecType::textByNameByLocale:
      return writeNames(out, mayBeNull, [&] { writeNames(out, false, text); });
    case SpecType::textsByNameByLocale:
      return writeNames(out, mayBeNull,
                        [&] { writeNames(out, false, [&] { writeTexts(out, false); }); });
  }
}

void writeKey(JsonWriter& out, const SpecKey& key) {
  out.key(key.name);
  out.beginObject();
  out.member("description", key.description);
  if (!key.standard.empty()) out.member("default", JSONValue(parseJson(key.standard).root()));
  writeConstraints(out, key);
  out.endObject();
}

void writeObject(JsonWriter& out, std::span<const SpecKey> keys, bool mayBeNull) {
  writeType(out, "object", mayBeNull);
  out.key("properties");
  out.beginObject();
  for (const SpecKey& key : keys) writeKey(out, key);
  out.endObject();
  out.key("required");
  out.beginArray();
  for (const SpecKey& key : keys)
    if (key.isRequired) out.string(key.name);
  out.endArray();
}

}  // namespace

std::string specSchema() {
  return jsonObject([](JsonWriter& out) {
    out.member("$schema", "https://json-schema.org/draft/2020-12/schema");
    out.member("title", "Zelvora spec");
    out.member("description",
               "What an application can be asked for by voice, and how sure the library must be.");
    writeObject(out, workbench::fullSpecKeys(), false);
  });
}

}  // namespace zelvora
