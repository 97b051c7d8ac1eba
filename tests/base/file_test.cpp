#include <ZelvoraSDK/base/text.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/limits.h>
#include <tests/support/temporary_folder.h>

namespace zelvora {
namespace {

int failureOf(const std::filesystem::path& path) {
  try {
    static_cast<void>(readFile(path));
  } catch (const Error& error) {
    EXPECT_EQ(error.domain(), "POSIX");
    EXPECT_TRUE(error.description().starts_with(path.string() + ": ")) << error.description();
    return error.code();
  }
  return 0;
}

TEST(File, IsReadUpToItsLimit) {
  const testing::TemporaryFolder folder;
  const std::filesystem::path file = folder.path() / "large";
  std::ofstream(file) << "begin";
  std::filesystem::resize_file(file, kMaxFileBytes);
  const std::string bytes = readFile(file);
  EXPECT_EQ(bytes.size(), kMaxFileBytes);
  EXPECT_TRUE(bytes.starts_with("begin"));
  std::filesystem::resize_file(file, kMaxFileBytes + 1);
  EXPECT_EQ(failureOf(file), EFBIG);
}

TEST(File, FailsWithItsNameAndTheReason) {
  const testing::TemporaryFolder folder;
  EXPECT_EQ(failureOf("/dev/zero"), EFBIG);
  EXPECT_EQ(failureOf(folder.path()), EISDIR);
  EXPECT_EQ(failureOf(folder.path() / "missing"), ENOENT);
}

}  // namespace
}  // namespace zelvora
