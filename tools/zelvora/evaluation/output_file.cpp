#include "output_file.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <string>
#include <system_error>

#include "../output.h"

namespace zelvora::tool {
namespace {

[[noreturn]] void fail(const std::filesystem::path& path, int code) {
  throw UsageError(path.string() + ": " + std::generic_category().message(code));
}

void writeWhole(const std::filesystem::path& target, const std::filesystem::path& shown,
                std::string_view bytes) {
  std::FILE* const file = std::fopen(target.c_str(), "wb");
  if (!file) fail(shown, errno);
  const bool isWritten = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  const int writeError = errno;
  // A full disk may show only when the rest is written out.
  if (std::fclose(file) != 0) fail(shown, errno);
  if (!isWritten) fail(shown, writeError);
}

}  // namespace

void writeOutputFile(const std::filesystem::path& path, std::string_view bytes) {
  std::error_code error;
  // Bytes go straight into a device or a pipe, which a rename would replace.
  if (std::filesystem::exists(path, error) && !std::filesystem::is_regular_file(path, error))
    return writeWhole(path, path, bytes);
  // A link keeps its target.
  const std::filesystem::path real = std::filesystem::is_symlink(path, error)
                                         ? std::filesystem::weakly_canonical(path, error)
                                         : path;
  const std::filesystem::path unfinished = real.string() + ".unfinished";
  try {
    writeWhole(unfinished, path, bytes);
  } catch (const UsageError&) {
    std::filesystem::remove(unfinished, error);
    throw;
  }
  const auto old = std::filesystem::status(real, error);
  if (!error && std::filesystem::exists(old))
    std::filesystem::permissions(unfinished, old.permissions(), error);
  std::filesystem::rename(unfinished, real, error);
  if (error) fail(path, error.value());
}

}  // namespace zelvora::tool
