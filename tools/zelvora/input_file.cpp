#include "input_file.h"

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/file.h>

#include "usage_error.h"

namespace zelvora::tool {

std::string readInputFile(const std::filesystem::path& path) {
  try {
    return readFile(path);
  } catch (const Error& error) {
    throw UsageError(error.description());
  }
}

}  // namespace zelvora::tool
