#include <ZelvoraSDK/adapters/sqlite/sqlite_defaults.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <fstream>
#include <functional>
#include <limits>
#include <list>
#include <optional>
#include <thread>

#include <ZelvoraSDK/base/error.h>
#include <tests/support/child_process.h>
#include <tests/support/temporary_folder.h>

namespace zelvora {
namespace {

using testing::ChildProcess;
using ::testing::HasSubstr;
using testing::TemporaryFolder;

/// The failure of `call`, absent when it gave an answer.
std::optional<Error> failureOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const Error& error) {
    return error;
  }
  return std::nullopt;
}

/// Another user of the file, with SQL of its own.
class Sql {
 public:
  explicit Sql(const std::filesystem::path& file) { sqlite3_open(file.c_str(), &database_); }
  ~Sql() { sqlite3_close(database_); }
  Sql(const Sql&) = delete;
  Sql& operator=(const Sql&) = delete;

  void run(const std::string& sql) {
    ASSERT_EQ(sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sql;
  }

 private:
  sqlite3* database_ = nullptr;
};

class SqliteDefaultsTest : public ::testing::Test {
 protected:
  SqliteDefaults open() const {
    return SqliteDefaults({.file = file_, .busyTimeout = std::chrono::milliseconds(30)});
  }
  /// For tests in which the file is held, but never for long.
  SqliteDefaults openPatiently() const {
    return SqliteDefaults({.file = file_, .busyTimeout = std::chrono::seconds(60)});
  }

  TemporaryFolder folder_;
  std::filesystem::path file_ = folder_.path() / "a" / "b" / "defaults.sqlite";
};

TEST_F(SqliteDefaultsTest, CountsByKeyAndForGood) {
  SqliteDefaults first = open();
  EXPECT_EQ(first.integer("k"), 0);
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "a"));  // reading creates nothing

  EXPECT_EQ(first.increment("k"), 1);
  EXPECT_EQ(first.increment("k"), 2);
  EXPECT_EQ(first.increment("K"), 1);
  SqliteDefaults second = open();
  EXPECT_EQ(second.integer("k"), 2);
  EXPECT_EQ(second.increment("k"), 3);
  EXPECT_EQ(first.integer("k"), 3);
  EXPECT_EQ(first.integer("missing"), 0);

  struct stat status {};
  ASSERT_EQ(::stat((folder_.path() / "a").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(SqliteDefaultsTest, LosesNoIncrementAcrossProcessesAndThreads) {
  constexpr int kProcesses = 4;
  constexpr int kIncrements = 40;
  const auto work = [this] {
    SqliteDefaults defaults = openPatiently();
    const auto count = [&defaults] {
      for (int i = 0; i < kIncrements; ++i) defaults.increment("k");
    };
    std::thread other(count);
    count();
    other.join();
    return 0;
  };
  std::list<ChildProcess> children;
  for (int i = 0; i < kProcesses; ++i) children.emplace_back(work);
  for (ChildProcess& child : children) EXPECT_EQ(child.wait(), 0);
  EXPECT_EQ(open().integer("k"), kProcesses * kIncrements * 2);
}

TEST_F(SqliteDefaultsTest, KeepsWhatItAnsweredWhenItsProcessIsKilled) {
  std::int64_t answered = 0;
  for (int round = 0; round < 8; ++round) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    ChildProcess child([&] {
      SqliteDefaults defaults = openPatiently();
      for (;;) {
        defaults.increment("k");
        if (::write(pipe[1], "+", 1) != 1) return 1;
      }
    });
    ::close(pipe[1]);
    char byte = 0;
    for (int i = 0; i < 5 + round; ++i, ++answered) ASSERT_EQ(::read(pipe[0], &byte, 1), 1);
    child.kill();
    while (::read(pipe[0], &byte, 1) == 1) ++answered;
    ::close(pipe[0]);

    const std::int64_t stored = openPatiently().integer("k");
    EXPECT_GE(stored, answered);
    EXPECT_LE(stored, answered + 1);  // killed between the commit and its answer
    answered = stored;
  }
  EXPECT_EQ(open().increment("k"), answered + 1);
}

TEST_F(SqliteDefaultsTest, WaitsForALockedFileOnlySoLong) {
  SqliteDefaults defaults = open();
  defaults.increment("k");
  {
    Sql other(file_);
    other.run("BEGIN EXCLUSIVE");
    for (const auto& call : {std::function<void()>([&] { defaults.increment("k"); }),
                             std::function<void()>([&] { defaults.integer("k"); })}) {
      const auto failure = failureOf(call);
      ASSERT_TRUE(failure);
      EXPECT_EQ(failure->domain(), "SQLite");
      EXPECT_EQ(failure->code(), SQLITE_BUSY);
      EXPECT_EQ(failure->description(), file_.string() + ": database is locked");
    }
  }
  EXPECT_EQ(defaults.increment("k"), 2);
}

TEST_F(SqliteDefaultsTest, ReportsADamagedFileAndRecoversOnceItIsGone) {
  std::filesystem::create_directories(file_.parent_path());
  folder_.write("a/b/defaults.sqlite", std::string(5000, '?'));
  SqliteDefaults defaults = open();
  for (const auto& call : {std::function<void()>([&] { defaults.increment("k"); }),
                           std::function<void()>([&] { defaults.integer("k"); })}) {
    const auto failure = failureOf(call);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code(), SQLITE_NOTADB);
    EXPECT_EQ(failure->description(), file_.string() + ": file is not a database");
  }
  std::filesystem::remove(file_);
  EXPECT_EQ(defaults.increment("k"), 1);

  // Past the first page, which is read when the file is opened.
  std::fstream(file_, std::ios::in | std::ios::out).seekp(4096) << std::string(4096, '?');
  const auto failure = failureOf([&] { open().integer("k"); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->code(), SQLITE_CORRUPT);
}

TEST_F(SqliteDefaultsTest, CountsOnInAFileThatTookItsPlace) {
  SqliteDefaults defaults = open();
  defaults.increment("k");
  std::filesystem::remove(file_);
  EXPECT_EQ(defaults.integer("k"), 0);
  EXPECT_EQ(defaults.increment("k"), 1);
  EXPECT_EQ(open().integer("k"), 1);
}

TEST_F(SqliteDefaultsTest, ReadsAFileThatItMayNotWrite) {
  open().increment("k");
  std::filesystem::permissions(file_, std::filesystem::perms(0444));
  for (auto path = file_.parent_path(); path != folder_.path().parent_path();
       path = path.parent_path())
    std::filesystem::permissions(path, std::filesystem::perms(0555));
  ChildProcess reader([this] {
    if (::geteuid() == 0 && ::setuid(65534) != 0) return 1;  // root may write everywhere
    SqliteDefaults defaults = open();
    if (defaults.integer("k") != 1) return 2;
    const auto failure = failureOf([&] { defaults.increment("k"); });
    if (!failure || (failure->code() & 0xFF) != SQLITE_READONLY) return 3;
    return defaults.integer("k") == 1 ? 0 : 4;
  });
  EXPECT_EQ(reader.wait(), 0);
  std::filesystem::permissions(folder_.path(), std::filesystem::perms(0700));
  std::filesystem::permissions(folder_.path() / "a", std::filesystem::perms(0700));
  std::filesystem::permissions(folder_.path() / "a" / "b", std::filesystem::perms(0700));
}

TEST_F(SqliteDefaultsTest, KeepsItsCountsWhenTheDiskIsFull) {
  open().increment("k");
  ChildProcess writer([this] {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit full{.rlim_cur = std::filesystem::file_size(file_) + 100,
                      .rlim_max = RLIM_INFINITY};
    if (::setrlimit(RLIMIT_FSIZE, &full) != 0) return 1;
    SqliteDefaults defaults = open();
    const auto fill = [&] {
      for (int i = 0; i < 1000; ++i) defaults.increment(std::string(100, 'x') + std::to_string(i));
    };
    if (!failureOf(fill)) return 2;
    if (defaults.integer("k") != 1) return 3;

    const rlimit roomy{.rlim_cur = RLIM_INFINITY, .rlim_max = RLIM_INFINITY};
    if (::setrlimit(RLIMIT_FSIZE, &roomy) != 0) return 4;
    return defaults.increment("k") == 2 ? 0 : 5;
  });
  EXPECT_EQ(writer.wait(), 0);
}

TEST_F(SqliteDefaultsTest, NamesAPlaceThatCannotHoldAFile) {
  folder_.write("a", "a file where a folder should be");
  auto failure = failureOf([&] { open().increment("k"); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->domain(), "POSIX");
  EXPECT_THAT(failure->description(), HasSubstr((folder_.path() / "a" / "b").string()));

  failure = failureOf([&] { SqliteDefaults({.file = folder_.path()}).integer("k"); });
  ASSERT_TRUE(failure);
  EXPECT_THAT(failure->description(), HasSubstr("unable to open database file"));
}

TEST_F(SqliteDefaultsTest, DiesRatherThanPassTheLargestInteger) {
  open().increment("k");
  Sql(file_).run("UPDATE integers SET value = 9223372036854775806");
  EXPECT_EQ(open().increment("k"), std::numeric_limits<std::int64_t>::max());
  EXPECT_DEATH(open().increment("k"), "Fatal error: The count under k would pass");
}

}  // namespace
}  // namespace zelvora
