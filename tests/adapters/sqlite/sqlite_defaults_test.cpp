#include <ZelvoraSDK/adapters/sqlite/sqlite_defaults.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include <ZelvoraSDK/adapters/sqlite/private/store_file.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/testing/system.h>
#include <tests/support/child_process.h>
#include <tests/support/temporary_folder.h>

namespace zelvora {
namespace {

using testing::ChildProcess;
using ::testing::HasSubstr;
using testing::TemporaryFolder;

/// The Error that `call` throws; absent when it returns.
std::optional<Error> failureOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const Error& error) {
    return error;
  }
  return std::nullopt;
}

mode_t modeOf(const std::filesystem::path& path) {
  struct stat status {};
  EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
  return status.st_mode & 0777;
}

std::string bytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Another user of the file, with its own SQL.
class Sql {
 public:
  explicit Sql(const std::filesystem::path& file) { sqlite3_open(file.c_str(), &database_); }
  ~Sql() { sqlite3_close(database_); }
  Sql(const Sql&) = delete;
  Sql& operator=(const Sql&) = delete;

  void run(const std::string& sql) {
    ASSERT_EQ(sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sql;
  }
  std::int64_t number(const std::string& sql) {
    std::int64_t answer = -1;
    const auto take = [](void* into, int, char** columns, char**) {
      *static_cast<std::int64_t*>(into) = std::stoll(columns[0]);
      return 0;
    };
    sqlite3_exec(database_, sql.c_str(), take, &answer, nullptr);
    return answer;
  }

 private:
  sqlite3* database_ = nullptr;
};

class SqliteDefaultsTest : public ::testing::Test {
 protected:
  SqliteDefaults open() const {
    return SqliteDefaults({.file = file_, .busyTimeout = std::chrono::milliseconds(30)});
  }
  /// For tests in which the file is locked, but never for long.
  SqliteDefaults openPatiently() const {
    return SqliteDefaults({.file = file_, .busyTimeout = std::chrono::seconds(60)});
  }

  TemporaryFolder folder_;
  std::filesystem::path file_ = folder_.path() / "a" / "b" / "defaults.sqlite";
};

TEST_F(SqliteDefaultsTest, CountsByKeyAndPermanently) {
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

  EXPECT_EQ(modeOf(folder_.path() / "a"), 0700u);
}

TEST_F(SqliteDefaultsTest, ForgetsExactlyTheKeysThatBeginWithAPrefix) {
  SqliteDefaults defaults = open();
  defaults.removeAll("a");
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "a"));  // nothing to forget creates nothing

  const char* const gone[] = {"a_", "a_b", "a_%"};
  const char* const kept[] = {"a", "ab", "aXb", "A_b", "b a_"};
  for (const char* key : gone) defaults.increment(key);
  for (const char* key : kept) defaults.increment(key);
  defaults.removeAll("a_");
  for (const char* key : gone) EXPECT_EQ(defaults.integer(key), 0) << key;
  for (const char* key : kept) EXPECT_EQ(defaults.integer(key), 1) << key;
  EXPECT_EQ(defaults.increment("a_b"), 1);
}

TEST_F(SqliteDefaultsTest, IsForTheUserAloneWhateverTheUmask) {
  for (const mode_t mask : {0000, 0022, 0777}) {
    const mode_t before = ::umask(mask);
    std::filesystem::remove(file_);
    std::filesystem::create_directories(file_.parent_path());
    std::filesystem::permissions(file_.parent_path(), std::filesystem::perms(0777));
    open().increment("k");
    ::umask(before);
    EXPECT_EQ(modeOf(file_), 0600u) << mask;
  }
  // A file that an earlier version left readable for everyone.
  std::filesystem::permissions(file_, std::filesystem::perms(0644));
  EXPECT_EQ(open().increment("k"), 2);
  EXPECT_EQ(modeOf(file_), 0600u);
}

TEST_F(SqliteDefaultsTest, FollowsALinkedFolderButNoLinkedFile) {
  open().increment("k");
  const auto linkedFolder = folder_.path() / "linked";
  std::filesystem::create_directory_symlink(file_.parent_path(), linkedFolder);
  EXPECT_EQ(SqliteDefaults({.file = linkedFolder / file_.filename()}).increment("k"), 2);

  for (const auto& target : {file_, folder_.path() / "nowhere"}) {
    const auto link = folder_.path() / "link.sqlite";
    std::filesystem::remove(link);
    std::filesystem::create_symlink(target, link);
    SqliteDefaults defaults({.file = link});
    for (const auto& call : {std::function<void()>([&] { defaults.increment("k"); }),
                             std::function<void()>([&] { defaults.integer("k"); })}) {
      const auto failure = failureOf(call);
      ASSERT_TRUE(failure);
      EXPECT_EQ(failure->description(), link.string() + " is a symbolic link");
    }
  }
  EXPECT_EQ(open().integer("k"), 2);
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "nowhere"));

  const auto pipe = folder_.path() / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_TRUE(failureOf([&] { SqliteDefaults({.file = pipe}).increment("k"); }));
}

TEST_F(SqliteDefaultsTest, AdoptsItsOwnTableAndRefusesStrangers) {
  const char* const ourTable =
      "CREATE TABLE integers (key TEXT PRIMARY KEY, value INTEGER NOT NULL) STRICT, WITHOUT ROWID;"
      "INSERT INTO integers VALUES ('k', 4);";
  const struct {
    const char* name;
    std::string sql;
    const char* refusal;  ///< Null: counting continues.
  } rows[] = {
      {"of an earlier version", ourTable, nullptr},
      {"empty", "VACUUM", nullptr},
      {"another table", "CREATE TABLE cookies (name TEXT)", "is a database of another program"},
      {"our table and another", ourTable + std::string("CREATE TABLE cookies (name TEXT)"),
       "is a database of another program"},
      {"a trigger of a stranger's",
       ourTable + std::string("CREATE TRIGGER t AFTER UPDATE ON integers BEGIN DELETE FROM "
                              "integers; END"),
       "is a database of another program"},
      {"a like table", "CREATE TABLE integers (key TEXT PRIMARY KEY, value BLOB)",
       "is a database of another program"},
      {"another's mark", ourTable + std::string("PRAGMA application_id = 252006674"),
       "is a database of another program"},
      {"a newer version",
       ourTable + std::string("PRAGMA application_id = 1516596342; PRAGMA user_version = 2"),
       "was written by a newer version"}};
  std::filesystem::create_directories(file_.parent_path());
  for (const auto& row : rows) {
    std::filesystem::remove(file_);
    Sql(file_).run(row.sql);
    const std::string before = bytesOf(file_);
    SqliteDefaults defaults = open();
    const auto read = failureOf([&] { defaults.integer("k"); });
    EXPECT_EQ(bytesOf(file_), before) << row.name << ": reading changes nothing";
    const auto written = failureOf([&] { defaults.increment("k"); });
    EXPECT_FALSE(std::filesystem::exists(file_.string() + ".damaged")) << row.name;
    if (!row.refusal) {
      EXPECT_FALSE(read || written) << row.name;
      EXPECT_EQ(Sql(file_).number("PRAGMA application_id"), 1516596342) << row.name;
      EXPECT_EQ(Sql(file_).number("PRAGMA user_version"), 1) << row.name;
      continue;
    }
    EXPECT_EQ(bytesOf(file_), before) << row.name;
    for (const auto& failure : {read, written}) {
      ASSERT_TRUE(failure) << row.name;
      EXPECT_EQ(failure->description(), file_.string() + ": " + row.refusal);
    }
  }
}

TEST_F(SqliteDefaultsTest, ReplacesADamagedFileAndLogsOneLine) {
  const std::string damaged = file_.string() + ".damaged";
  std::filesystem::create_directories(file_.parent_path());
  folder_.write("a/b/defaults.sqlite", std::string(5000, '?'));
  for (const char* part : {"-wal", "-shm", "-journal"})
    folder_.write("a/b/defaults.sqlite" + std::string(part), "old");
  const auto log = std::make_shared<testing::RecordingLog>();
  SqliteDefaults defaults({.file = file_, .log = log});
  EXPECT_EQ(defaults.integer("k"), 0);
  EXPECT_FALSE(std::filesystem::exists(file_));  // reading creates nothing
  EXPECT_EQ(defaults.increment("k"), 1);
  EXPECT_EQ(bytesOf(damaged), std::string(5000, '?'));
  EXPECT_EQ(modeOf(file_), 0600u);
  for (const char* part : {"-wal", "-shm", "-journal"})
    EXPECT_NE(bytesOf(file_.string() + part), "old");
  EXPECT_THAT(log->lines(), ::testing::ElementsAre(
                                AllOf(HasSubstr(damaged), HasSubstr("file is not a database"))));

  // Past the first page, which is read when the file is opened.
  std::fstream(file_, std::ios::in | std::ios::out).seekp(4096) << std::string(4096, '?');
  SqliteDefaults later({.file = file_, .log = log});
  EXPECT_EQ(later.integer("k"), 0);
  EXPECT_EQ(later.increment("k"), 1);
  EXPECT_EQ(defaults.increment("k"), 2);
  EXPECT_EQ(log->lines().size(), 2U);
  EXPECT_EQ(bytesOf(damaged).size(), std::filesystem::file_size(file_));
}

TEST_F(SqliteDefaultsTest, SetsADamagedFileAsideWithAllThatBelongsToIt) {
  const auto file = folder_.write("store", "damaged");
  for (const char* part : {"-wal", "-shm", "-journal"})
    folder_.write(std::string("store") + part, part);
  const auto identity = sqlite::identityOf(file);
  {
    // An open connection would mistake the next file's journal for its own.
    const sqlite::Use use(file, {}), another(file, {});
    EXPECT_TRUE(failureOf([&] { sqlite::setAside(file, identity, {}); }));
  }
  EXPECT_FALSE(sqlite::setAside(file, sqlite::identityOf(folder_.path()), {}));  // Another file.
  EXPECT_TRUE(sqlite::setAside(file, identity, {}));
  EXPECT_FALSE(sqlite::setAside(file, identity, {}));
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_EQ(bytesOf(file.string() + ".damaged"), "damaged");
  for (const char* part : {"-wal", "-shm", "-journal"})
    EXPECT_EQ(bytesOf(file.string() + ".damaged" + part), part);

  // The next damaged file has no journal, so the earlier one's must not stay beside it.
  folder_.write("store", "damaged again");
  EXPECT_TRUE(sqlite::setAside(file, sqlite::identityOf(file), {}));
  EXPECT_EQ(bytesOf(file.string() + ".damaged"), "damaged again");
  EXPECT_FALSE(std::filesystem::exists(file.string() + ".damaged-journal"));
}

TEST_F(SqliteDefaultsTest, CountsAgainWhateverByteIsDamagedOrMissing) {
  open().increment("k");
  const std::string whole = bytesOf(file_);
  const auto countsOn = [&](const std::string& bytes, std::size_t at) {
    std::filesystem::remove(file_.string() + ".damaged");
    std::ofstream(file_, std::ios::binary | std::ios::trunc) << bytes;
    SqliteDefaults defaults = open();
    const auto failure = failureOf([&] { defaults.increment("k"); });
    // The file's version and mark: with those changed it could be another program's.
    const bool isMark = (at >= 60 && at < 64) || (at >= 68 && at < 72);
    EXPECT_TRUE(!failure || isMark) << at << ": " << failure->description();
    const std::int64_t now = failure ? 0 : defaults.integer("k");
    EXPECT_GE(now, failure ? 0 : 1) << at;
  };
  for (std::size_t at = 0; at < whole.size(); at = at < 160 ? at + 1 : at + 41) {
    std::string bytes = whole;
    bytes[at] = static_cast<char>(bytes[at] ^ 0x55);
    countsOn(bytes, at);
  }
  for (std::size_t size = 0; size < whole.size(); size += 397)
    countsOn(whole.substr(0, size), size < 72 ? whole.size() : size);
}

TEST_F(SqliteDefaultsTest, ReplacesADamagedFileOnceForFortyProcesses) {
  open().increment("k");
  std::fstream(file_, std::ios::in | std::ios::out).seekp(4096) << std::string(4096, '?');
  const std::string lines = folder_.path() / "lines";
  class FileLog final : public LogSink {
   public:
    explicit FileLog(std::string path) : path_(std::move(path)) {}
    void write(std::string_view) override { std::ofstream(path_, std::ios::app) << "x"; }

   private:
    std::string path_;
  };
  std::list<ChildProcess> children;
  for (int i = 0; i < 40; ++i)
    children.emplace_back([&] {
      SqliteDefaults defaults({.file = file_,
                               .busyTimeout = std::chrono::seconds(60),
                               .log = std::make_shared<FileLog>(lines)});
      defaults.integer("k");
      for (int pick = 0; pick < 3; ++pick) defaults.increment("k");
      return 0;
    });
  for (ChildProcess& child : children) EXPECT_EQ(child.wait(), 0);
  EXPECT_EQ(bytesOf(lines), "x");
  EXPECT_EQ(open().integer("k"), 120);
}

TEST_F(SqliteDefaultsTest, LeavesADamagedFileThatItMayNotMove) {
  std::filesystem::create_directories(file_.parent_path());
  folder_.write("a/b/defaults.sqlite", std::string(5000, '?'));
  std::filesystem::permissions(folder_.path(), std::filesystem::perms(0755));
  std::filesystem::permissions(file_, std::filesystem::perms(0666));
  std::filesystem::permissions(file_.parent_path(), std::filesystem::perms(0555));
  ChildProcess reader([this] {
    if (::geteuid() == 0 && ::setuid(65534) != 0) return 1;  // root may write everywhere
    SqliteDefaults defaults = open();
    const auto failure = failureOf([&] { defaults.increment("k"); });
    const bool isTold =
        failure && failure->description().find("can't be set aside") != std::string::npos;
    return isTold ? 0 : 2;
  });
  EXPECT_EQ(reader.wait(), 0);
  std::filesystem::permissions(file_.parent_path(), std::filesystem::perms(0755));
  EXPECT_EQ(bytesOf(file_), std::string(5000, '?'));
}

TEST_F(SqliteDefaultsTest, CountsUpFromZeroWhereTheCountIsNegative) {
  open().increment("k");
  Sql(file_).run("UPDATE integers SET value = -100");
  EXPECT_EQ(open().increment("k"), 1);
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

TEST_F(SqliteDefaultsTest, KeepsEachReturnedCountWhenItsProcessIsKilled) {
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
    EXPECT_LE(stored, answered + 1);  // killed between the commit and the return
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

TEST_F(SqliteDefaultsTest, CountsInANewFileWhenItsFileIsDeleted) {
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
