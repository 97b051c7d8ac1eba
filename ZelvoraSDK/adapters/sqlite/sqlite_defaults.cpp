#include <ZelvoraSDK/adapters/sqlite/sqlite_defaults.h>

#include <sqlite3.h>
#include <sys/stat.h>

#include <cerrno>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

using SteadyClock = std::chrono::steady_clock;

/// How often a held file is tried again. SQLite's own handler waits ever longer, so that a busy
/// store starves the unlucky.
constexpr std::chrono::milliseconds kBusyPoll{2};

// The default rollback journal: one small file that can be read where the folder is read-only, and
// its two syncs per increment are nothing at the pace at which a user picks. A write-ahead log
// would be faster, but keeps two more files and shared memory beside it.
constexpr const char* kSchema =
    "CREATE TABLE IF NOT EXISTS integers (key TEXT PRIMARY KEY, value INTEGER NOT NULL)"
    " STRICT, WITHOUT ROWID";
constexpr const char* kSelect = "SELECT value FROM integers WHERE key = ?1";
/// Yields no row when the value is the largest there is.
constexpr const char* kIncrement =
    "INSERT INTO integers VALUES (?1, 1) ON CONFLICT (key) DO UPDATE SET value = value + 1"
    " WHERE value < 9223372036854775807 RETURNING value";

struct Close {
  void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, Close>;
using Statement = std::unique_ptr<sqlite3_stmt, Close>;

void makePrivateFolders(const std::filesystem::path& folder) {
  std::error_code ignored;
  if (folder.empty() || std::filesystem::is_directory(folder, ignored)) return;
  makePrivateFolders(folder.parent_path());
  if (::mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST) return;
  const int code = errno;
  throw Error("POSIX", code,
              "can't create " + folder.string() + ": " + std::generic_category().message(code));
}

}  // namespace

/// One open file. Not thread-safe. Of no further use once a call has thrown.
class SqliteDefaults::Connection {
 public:
  explicit Connection(const Options& options) : options_(options) {
    makePrivateFolders(options_.file.parent_path());
    beginWaiting();
    open();
    run(prepared(kSchema).get());
    select_ = prepared(kSelect);
    increment_ = prepared(kIncrement);
  }

  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Whether the file that is open no longer has its name.
  [[nodiscard]] bool hasMoved() const {
    int moved = 0;
    sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    return moved != 0;
  }

  std::int64_t value(const std::string& key) { return runFor(select_.get(), key).value_or(0); }

  /// The new value; absent when there is no larger one.
  std::optional<std::int64_t> increment(const std::string& key) {
    return runFor(increment_.get(), key);
  }

 private:
  void open() {
    sqlite3* database = nullptr;
    constexpr int kFlags =
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
    const int code = sqlite3_open_v2(options_.file.c_str(), &database, kFlags, nullptr);
    database_.reset(database);
    check(code);
    check(sqlite3_busy_handler(database, &Connection::waitWhileBusy, this));
  }

  Statement prepared(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    check(sqlite3_prepare_v3(database_.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &statement,
                             nullptr));
    return Statement(statement);
  }

  std::optional<std::int64_t> runFor(sqlite3_stmt* statement, const std::string& key) {
    beginWaiting();
    check(sqlite3_bind_text(statement, 1, key.data(), static_cast<int>(key.size()),
                            SQLITE_TRANSIENT));
    return run(statement);
  }

  /// The first column of the last row. The statement's work is committed by its end, not by its
  /// rows.
  std::optional<std::int64_t> run(sqlite3_stmt* statement) {
    std::optional<std::int64_t> answer;
    int code = 0;
    while ((code = sqlite3_step(statement)) == SQLITE_ROW)
      answer = sqlite3_column_int64(statement, 0);
    check(code);
    check(sqlite3_reset(statement));
    return answer;
  }

  void check(int code) const {
    if (code == SQLITE_OK || code == SQLITE_DONE) return;
    const char* cause = database_ ? sqlite3_errmsg(database_.get()) : sqlite3_errstr(code);
    throw Error("SQLite", code, options_.file.string() + ": " + cause);
  }

  void beginWaiting() { deadline_ = SteadyClock::now() + options_.busyTimeout; }

  static int waitWhileBusy(void* self, int /*attempts*/) {
    if (SteadyClock::now() >= static_cast<Connection*>(self)->deadline_) return 0;
    std::this_thread::sleep_for(kBusyPoll);
    return 1;
  }

  const Options& options_;
  SteadyClock::time_point deadline_;
  Database database_;
  Statement select_;
  Statement increment_;
};

SqliteDefaults::SqliteDefaults(Options options) : options_(std::move(options)) {
  // An absolute path can't be one of the names that SQLite reads as something else than a file.
  options_.file = std::filesystem::absolute(options_.file);
}

SqliteDefaults::~SqliteDefaults() = default;

template <class Operation>
auto SqliteDefaults::perform(Slot& slot, Operation operation) const {
  try {
    if (!slot) slot = std::make_unique<Connection>(options_);
    return operation(*slot);
  } catch (...) {
    slot.reset();
    throw;
  }
}

bool SqliteDefaults::hasNoFile() const {
  std::error_code ignored;
  return std::filesystem::status(options_.file, ignored).type() ==
         std::filesystem::file_type::not_found;
}

std::int64_t SqliteDefaults::integer(const std::string& key) {
  return connection_.with([&](Slot& slot) -> std::int64_t {
    if (slot && slot->hasMoved()) slot.reset();
    if (!slot && hasNoFile()) return 0;
    return perform(slot, [&](Connection& connection) { return connection.value(key); });
  });
}

std::int64_t SqliteDefaults::increment(const std::string& key) {
  const auto value = connection_.with([&](Slot& slot) {
    if (slot && slot->hasMoved()) slot.reset();
    return perform(slot, [&](Connection& connection) { return connection.increment(key); });
  });
  if (!value) fatalError("The count under " + key + " would pass the largest integer");
  return *value;
}

}  // namespace zelvora
