// Any bytes either decode or end in one Error; what decodes can be validated and stored.

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/spec/json_value.h>
#include <ZelvoraSDK/spec/minimal_spec.h>
#include <ZelvoraSDK/spec/runtime_spec.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace zelvora {
namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void decodeFull(const JsonDocument& document) {
  try {
    const UncheckedSpec spec(JsonCursor(document.root()).as<RuntimeSpec>());
    for (const std::string& problem : spec.validateSpec()) require(isValidUtf8(problem));
  } catch (const Error& error) {
    require(!error.description().empty() && error.domain() == kJsonErrorDomain);
  }
}

/// Whether the conversion keeps the task's blanks and so is fatal, as it has to be.
bool isFatal(const MinimalRuntimeSpec::MinimalTask& task) {
  const auto blankButNotEmpty = [](const std::string& text) {
    return !text.empty() && isBlank(text);
  };
  bool blank = false;
  for (const auto* text : {&task.id, &task.taskId, &task.title, &task.screenId, &task.screen_id})
    blank = blank || (*text && blankButNotEmpty(**text));
  for (const auto* words : {&task.keywords, &task.synonyms})
    for (const std::string& word : words->value_or(std::vector<std::string>{}))
      blank = blank || isBlank(word);
  for (const auto& [key, value] : task.defaultParams.value_or(Params{}))
    blank = blank || isBlank(key) || isBlank(value);
  return blank;
}

void decodeMinimal(const JsonDocument& document) {
  try {
    auto spec = JsonCursor(document.root()).as<MinimalRuntimeSpec>();
    if (spec.tasksRaw) std::erase_if(*spec.tasksRaw, isFatal);
    for (const ZelvoraTaskSpec& task : spec.tasks()) require(task.validate().empty());
  } catch (const Error& error) {
    require(!error.description().empty() && error.domain() == kJsonErrorDomain);
  }
}

/// A document that is written and read back is the same.
void storeAndReadBack(const JsonDocument& document) {
  const JSONValue tree(document.root());
  const JSONValue again(parseJson(toJson(tree)).root());
  require(again == tree);
}

/// Every failure is an Error that says something.
void exercise(std::string_view bytes) {
  try {
    const JsonDocument document = parseJson(bytes);
    require(isValidUtf8(bytes));
    decodeFull(document);
    decodeMinimal(document);
    storeAndReadBack(document);
  } catch (const Error& error) {
    require(!error.description().empty() && error.domain() == kJsonErrorDomain);
  }
}

}  // namespace
}  // namespace zelvora

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zelvora::exercise({reinterpret_cast<const char*>(data), size});
  return 0;
}
