#include "input_file.h"

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/file.h>
#include <ZelvoraSDK/base/json_parse.h>
#include <ZelvoraSDK/spec/json_value.h>

#include "usage_error.h"

namespace zelvora::tool {

std::string readInputFile(const std::filesystem::path& path) {
  try {
    return readFile(path);
  } catch (const Error& error) {
    throw UsageError(error.description());
  }
}

AnyEncodable specInFile(const std::filesystem::path& path) {
  const std::string bytes = readInputFile(path);
  try {
    return AnyEncodable(JSONValue::from(parseJson(bytes).root()));
  } catch (const Error& error) {
    throw UsageError(path.string() + ": " + error.description());
  }
}

}  // namespace zelvora::tool
