#pragma once

#include <filesystem>
#include <string>

#include <ZelvoraSDK/spec/any_encodable.h>

namespace zelvora::tool {

/// The whole file. Throws UsageError that names it and says why it can't be read.
std::string readInputFile(const std::filesystem::path& path);

/// The app spec in a JSON file, of any shape. Throws UsageError that names the file and the place.
AnyEncodable specInFile(const std::filesystem::path& path);

}  // namespace zelvora::tool
