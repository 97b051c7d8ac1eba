#include <ZelvoraSDK/base/file.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/limits.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

namespace zelvora {
namespace {

[[noreturn]] void failReading(const std::filesystem::path& path, int code) {
  throw Error("POSIX", code, path.string() + ": " + std::generic_category().message(code));
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

std::string readFile(const std::filesystem::path& path) {
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
  if (!file) failReading(path, errno);
  std::error_code unknownSize;
  const auto size = std::filesystem::file_size(path, unknownSize);
  if (!unknownSize && size > kMaxFileBytes) failReading(path, EFBIG);
  std::string bytes;
  if (!unknownSize) bytes.reserve(size);
  char block[1 << 16];
  while (const std::size_t length = std::fread(block, 1, sizeof block, file.get())) {
    // What is no regular file may go on for ever.
    if (length > kMaxFileBytes - bytes.size()) failReading(path, EFBIG);
    bytes.append(block, length);
  }
  if (std::ferror(file.get())) failReading(path, errno);
  return bytes;
}

}  // namespace zelvora
