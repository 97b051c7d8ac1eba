#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include <ZelvoraSDK/adapters/host.h>
#include <ZelvoraSDK/adapters/sqlite/sqlite_defaults.h>
#include <ZelvoraSDK/async/executors.h>
#include <ZelvoraSDK/zelvora.h>
#include <tests/facade/small_spec.h>

namespace zelvora {
namespace {

constexpr int kPicks = 20;

/// A whole program: loop, platform, façade, one command, and picks accepted at the end.
struct Program {
  explicit Program(const std::filesystem::path& data)
      : loop(std::make_unique<MainLoop>()),
        host(std::make_unique<HostPlatform>(
            loop->executor(),
            HostOptions{.dataFolder = data, .log = std::make_shared<SilentLogSink>()})),
        facade(std::make_unique<Zelvora>(host->platform(), ZelvoraSettings{.publishableKey = "key"},
                                         StoredSpec::fromJson(testing::smallSpec()))) {}

  /// Runs one command and leaves `kPicks` picks and another command behind.
  void run(std::function<void()> atItsEnd) {
    facade->onResult = [this, atItsEnd = std::move(atItsEnd)](const ZelvoraResult&) {
      for (int i = 0; i < kPicks; ++i) facade->recordUserChoice("cart");
      facade->routeAndCallback("show my orders");
      loop->stop();
      atItsEnd();
    };
    facade->routeAndCallback("open my cart");
    loop->run();
  }

  std::unique_ptr<MainLoop> loop;
  std::unique_ptr<HostPlatform> host;
  std::unique_ptr<Zelvora> facade;
};

void destroy(Program& program, char part) {
  if (part == 'l') program.loop.reset();
  if (part == 'p') program.host.reset();
  if (part == 'f') program.facade.reset();
}

[[noreturn]] void endInOrder(const std::filesystem::path& data, const std::string& order) {
  {
    Program program(data);
    program.run([] {});
    for (const char part : order) destroy(program, part);
  }
  std::exit(0);
}

Program* endless = nullptr;

[[noreturn]] void exitInACallback(const std::filesystem::path& data, bool ownedByStatic) {
  if (ownedByStatic) {
    static Program program(data);
    endless = &program;
  } else {
    endless = new Program(data);
  }
  endless->run([] { std::exit(0); });
  std::exit(1);
}

[[noreturn]] void catchAnException(const std::filesystem::path& data) {
  try {
    Program program(data);
    program.run([] { throw std::runtime_error("spilt"); });
  } catch (const std::runtime_error&) {
    std::exit(0);
  }
  std::exit(1);
}

std::int64_t picksIn(const std::filesystem::path& data) {
  SqliteDefaults defaults({.file = data / "defaults.sqlite"});
  return defaults.integer("zelvora.learn.key.cart");
}

class EndingDeathTest : public ::testing::Test {
 protected:
  EndingDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

  /// The same folder in the child process, which runs the program from its start.
  [[nodiscard]] static std::filesystem::path data() {
    constexpr const char* kName = "ZELVORA_ENDING_TEST";
    if (!std::getenv(kName)) {
      const std::string folder = "zelvora-ending-" + std::to_string(::getpid());
      ::setenv(kName, (std::filesystem::temp_directory_path() / folder).c_str(), 1);
    }
    return std::getenv(kName);
  }
};

TEST_F(EndingDeathTest, MayComeInAnyOrderAndLosesNoPick) {
  std::string order = "flp";
  do {
    const auto folder = data() / order;
    std::filesystem::remove_all(folder);
    EXPECT_EXIT(endInOrder(folder, order), ::testing::ExitedWithCode(0), "") << order;
    EXPECT_EQ(picksIn(folder), kPicks) << order;
  } while (std::ranges::next_permutation(order).found);
  std::filesystem::remove_all(data());
}

TEST_F(EndingDeathTest, MayBeAnExitInACallbackOrAnExceptionThatIsCaught) {
  for (const char* way : {"heap", "static", "exception"}) {
    const auto folder = data() / way;
    std::filesystem::remove_all(folder);
    const std::string chosen = way;
    EXPECT_EXIT(
        {
          if (chosen == "exception") catchAnException(folder);
          exitInACallback(folder, chosen == "static");
        },
        ::testing::ExitedWithCode(0), "")
        << way;
    EXPECT_EQ(picksIn(folder), kPicks) << way;
  }
  std::filesystem::remove_all(data());
}

}  // namespace
}  // namespace zelvora
