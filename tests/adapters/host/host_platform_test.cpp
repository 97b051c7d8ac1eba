#include <ZelvoraSDK/adapters/host.h>

#include <gtest/gtest.h>
#include <stdlib.h>

#include <future>
#include <thread>

#include <boost/asio/post.hpp>

#include <ZelvoraSDK/async/executors.h>
#include <tests/support/temporary_folder.h>

namespace zelvora {
namespace {

using testing::TemporaryFolder;

TEST(HostPlatform, PutsThePartsTogether) {
  const TemporaryFolder folder;
  folder.write("Info.plist", "<plist><dict><key>K</key><string>v</string></dict></plist>");
  MainLoop loop;
  const HostPlatform host(loop.executor(),
                          {.bundle = folder.path(), .dataFolder = folder.path() / "data"});
  const Platform& platform = host.platform();
  EXPECT_EQ(platform.bundle->stringSetting("K"), "v");
  EXPECT_EQ(platform.executors->main(), loop.executor());

  std::promise<std::thread::id> ranOn;
  asio::post(platform.executors->background(),
             [&] { ranOn.set_value(std::this_thread::get_id()); });
  EXPECT_NE(ranOn.get_future().get(), std::this_thread::get_id());

  EXPECT_EQ(platform.defaults->increment("k"), 1);
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "data" / "defaults.sqlite"));
}

TEST(HostPlatform, NeedsNoBundle) {
  MainLoop loop;
  const TemporaryFolder folder;
  const HostPlatform host(loop.executor(), {.dataFolder = folder.path()});
  const Platform& platform = host.platform();
  EXPECT_EQ(platform.bundle->resource("spec", "json"), std::nullopt);
  EXPECT_EQ(platform.bundle->identifier(), std::nullopt);
  EXPECT_FALSE(platform.speech);
}

TEST(HostPlatform, KeepsDataInTheUsersFolder) {
  ::setenv("HOME", "/home/someone", 1);
  const struct {
    const char* dataHome;
    const char* expected;
  } rows[] = {
      {"/data", "/data/zelvora"},
      {"", "/home/someone/.local/share/zelvora"},
      {"relative", "/home/someone/.local/share/zelvora"},
  };
  for (const auto& row : rows) {
    ::setenv("XDG_DATA_HOME", row.dataHome, 1);
    EXPECT_EQ(HostOptions::userDataFolder(), row.expected);
  }
}

}  // namespace
}  // namespace zelvora
