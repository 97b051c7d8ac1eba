#include <ZelvoraSDK/adapters/plist/plist_bundle.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/limits.h>
#include <tests/support/temporary_folder.h>

namespace zelvora {
namespace {

using ::testing::StartsWith;
using testing::TemporaryFolder;

std::string failureOf(const std::filesystem::path& folder) {
  try {
    PlistBundle bundle(folder);
  } catch (const Error& error) {
    return error.description();
  }
  return "was read";
}

TEST(PlistBundle, ReadsItsSettings) {
  const TemporaryFolder folder;
  folder.write("Info.plist",
               "<plist><dict><key>CFBundleIdentifier</key><string>com.example.shop</string>"
               "<key>Text</key><string>0.5</string><key>Number</key><real>0.5</real>"
               "<key>Whole</key><integer>1</integer><key>Flag</key><true/></dict></plist>");
  const PlistBundle bundle(folder.path());
  EXPECT_EQ(bundle.identifier(), "com.example.shop");
  EXPECT_EQ(bundle.stringSetting("Text"), "0.5");
  EXPECT_EQ(bundle.numberSetting("Text"), std::nullopt);
  EXPECT_EQ(bundle.stringSetting("Number"), std::nullopt);
  EXPECT_EQ(bundle.numberSetting("Number"), 0.5);
  EXPECT_EQ(bundle.numberSetting("Whole"), 1);
  EXPECT_EQ(bundle.numberSetting("Flag"), std::nullopt);
  EXPECT_EQ(bundle.stringSetting("Missing"), std::nullopt);
}

TEST(PlistBundle, FindsResourcesDirectlyInItsFolderOnly) {
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder.path() / "app" / "inner.json");
  folder.write("secret.json", "{}");
  folder.write("app/shop.json", "{}");
  folder.write("app/inner.json/deep.json", "{}");
  folder.write("app/..json", "{}");
  const PlistBundle bundle(folder.path() / "app");
  EXPECT_EQ(bundle.identifier(), std::nullopt);
  EXPECT_EQ(bundle.resource("shop", "json"), folder.path() / "app" / "shop.json");
  EXPECT_EQ(bundle.resource(".", "json"), folder.path() / "app" / "..json");
  const struct {
    std::string name;
    std::string extension;
  } rows[] = {
      {"missing", "json"},
      {"SHOP", "json"},
      {"shop", "JSON"},
      {"inner", "json"},
      {"", "."},
      {"", ""},
      {"../secret", "json"},
      {"..", "/secret.json"},
      {"inner.json/deep", "json"},
      {folder.path() / "secret", "json"},
      {std::string("shop.json\0", 10), "x"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(bundle.resource(row.name, row.extension), std::nullopt)
        << row.name << '.' << row.extension;
}

TEST(PlistBundle, NamesAListThatCannotBeRead) {
  const TemporaryFolder folder;
  const std::string file = folder.path() / "Info.plist";
  EXPECT_EQ(failureOf(folder.path() / "missing"),
            (folder.path() / "missing").string() + ": is no folder");

  folder.write("Info.plist", "<plist><dict>");
  EXPECT_EQ(failureOf(folder.path()), file + ": <dict> is never closed");
  folder.write("Info.plist", std::string(kMaxPropertyListBytes + 1, ' '));
  EXPECT_EQ(failureOf(folder.path()), file + ": larger than 1048576 bytes");
  std::filesystem::remove(file);
  std::filesystem::create_directory(file);
  EXPECT_EQ(failureOf(folder.path()), file + ": is no regular file");
  std::filesystem::remove(file);
  std::filesystem::create_symlink("Info.plist", file);
  EXPECT_THAT(failureOf(folder.path()), StartsWith(file + ": Too many levels"));
}

}  // namespace
}  // namespace zelvora
