#include <ZelvoraSDK/spec/json_value.h>

#include <boost/json/value.hpp>

#include <ZelvoraSDK/base/json_write.h>

namespace zelvora {
namespace {

namespace json = boost::json;

JSONValue::Array toArray(const json::array& elements) {
  JSONValue::Array array;
  array.reserve(elements.size());
  for (const json::value& element : elements) array.emplace_back(element);
  return array;
}

JSONValue::Object toObject(const json::object& members) {
  std::vector<JSONValue::Object::value_type> entries;
  entries.reserve(members.size());
  for (const auto& member : members) entries.emplace_back(member.key(), member.value());
  return JSONValue::Object::fromUniqueEntries(std::move(entries));
}

JSONValue::Payload toPayload(const json::value& parsed) {
  switch (parsed.kind()) {
    case json::kind::null: return nullptr;
    case json::kind::bool_: return parsed.get_bool();
    case json::kind::int64:
    case json::kind::uint64:
    case json::kind::double_: return parsed.to_number<double>();
    case json::kind::string: return std::string(parsed.get_string());
    case json::kind::array: return toArray(parsed.get_array());
    case json::kind::object: return toObject(parsed.get_object());
  }
  return nullptr;
}

}  // namespace

JSONValue::JSONValue(const json::value& parsed) : payload_(toPayload(parsed)) {}

void writeJson(JsonWriter& out, const JSONValue& value) {
  std::visit([&out](const auto& payload) { out.value(payload); }, value.payload());
}

}  // namespace zelvora
