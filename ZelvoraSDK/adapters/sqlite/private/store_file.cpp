#include <ZelvoraSDK/adapters/sqlite/private/store_file.h>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include <ZelvoraSDK/base/error.h>

namespace zelvora::sqlite {
namespace {

constexpr const char* kDomain = "SQLite";

/// How often a held file is tried again. SQLite's own handler waits longer each time, so some
/// callers of a busy store would starve.
constexpr std::chrono::milliseconds kBusyPoll{2};

// The mark of a store: "Zelv", and the version of its table.
constexpr std::int64_t kApplicationId = 0x5A656C76;
constexpr std::int64_t kVersion = 1;

// The default rollback journal: one small file that can be read where the folder is read-only, and
// its two syncs per increment are nothing at the pace at which a user picks. A write-ahead log
// would be faster, but keeps two more files and shared memory beside it.
constexpr std::string_view kTable =
    "CREATE TABLE integers (key TEXT PRIMARY KEY, value INTEGER NOT NULL)"
    " STRICT, WITHOUT ROWID";
constexpr const char* kSelect = "SELECT value FROM integers WHERE key = ?1";
/// A negative value, which no store writes, counts as 0. Yields no row when the value is the
/// largest there is.
constexpr const char* kIncrement =
    "INSERT INTO integers VALUES (?1, 1)"
    " ON CONFLICT (key) DO UPDATE SET value = max(value, 0) + 1"
    " WHERE value < 9223372036854775807 RETURNING value";

constexpr const char* kRemoveAll = "DELETE FROM integers WHERE substr(key, 1, length(?1)) = ?1";

bool hasPrimaryCode(const Error& error, int code) {
  return error.domain() == kDomain && (error.code() & 0xFF) == code;
}

}  // namespace

bool isDamage(const Error& error) {
  return hasPrimaryCode(error, SQLITE_CORRUPT) || hasPrimaryCode(error, SQLITE_NOTADB);
}

bool isMoved(const Error& error) {
  return (error.domain() == kDomain && error.code() == SQLITE_READONLY_DBMOVED) ||
         hasPrimaryCode(error, SQLITE_CANTOPEN);
}

void Connection::Close::operator()(sqlite3* database) const { sqlite3_close_v2(database); }
void Connection::Close::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Connection::Connection(std::filesystem::path file, std::chrono::milliseconds busyTimeout)
    : file_(std::move(file)), busyTimeout_(busyTimeout) {
  beginWaiting();
  open();
  content_ = judge();
}

void Connection::open() {
  sqlite3* database = nullptr;
  constexpr int kFlags =
      SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOFOLLOW | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
  const int code = sqlite3_open_v2(file_.c_str(), &database, kFlags, nullptr);
  database_.reset(database);
  check(code);
  check(sqlite3_busy_handler(database, &Connection::waitWhileBusy, this));
  // Code that a stranger has put into the file must not run.
  check(sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr));
  check(sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr));
}

Connection::Content Connection::judge() {
  const std::int64_t id = number("PRAGMA application_id");
  if (id != 0 && id != kApplicationId)
    throw Error("ZelvoraDefaults", 1, file_.string() + ": is a database of another program");
  const std::int64_t version = number("PRAGMA user_version");
  if (id == kApplicationId && version > kVersion)
    throw Error("ZelvoraDefaults", 2, file_.string() + ": was written by a newer version");
  if (id == kApplicationId) requireHeader();
  const Content content = judgeSchema(id);
  if (content != Content::nothing) requireIntegrity();
  return content;
}

Connection::Content Connection::judgeSchema(std::int64_t id) {
  const std::int64_t objects = number("SELECT count(*) FROM sqlite_schema");
  if (objects == 0 && id == 0) return Content::nothing;
  const bool isOurTable = objects == 1 && text("SELECT sql FROM sqlite_schema") == kTable;
  if (isOurTable) return id == 0 ? Content::adopted : Content::ours;
  if (id == kApplicationId) failDamaged("another table");
  throw Error("ZelvoraDefaults", 1, file_.string() + ": is a database of another program");
}

/// Refuses header bytes that SQLite takes for a newer format or for a read-only file.
void Connection::requireHeader() {
  constexpr int kWriteVersion = 18, kReadVersion = 19, kSchemaFormat = 44, kHeaderBytes = 100;
  sqlite3_file* file = nullptr;
  sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
  std::array<unsigned char, kHeaderBytes> header{};
  // Through SQLite's own descriptor: closing another would drop its locks.
  check(file->pMethods->xRead(file, header.data(), kHeaderBytes, 0));
  const bool isKnown = header[kWriteVersion] <= 2 && header[kReadVersion] <= 2 &&
                       header[kSchemaFormat] == 0 && header[kSchemaFormat + 1] == 0 &&
                       header[kSchemaFormat + 2] == 0 && header[kSchemaFormat + 3] <= 4;
  if (!isKnown) failDamaged("unknown file format");
}

void Connection::requireIntegrity() {
  requireHeader();
  const std::string verdict = text("PRAGMA integrity_check(1)");
  if (verdict != "ok") failDamaged(verdict);
}

/// In one transaction: two processes may begin the same file.
void Connection::becomeOurs() {
  run("BEGIN IMMEDIATE");
  content_ = judge();
  if (content_ == Content::nothing) run(kTable.data());
  if (content_ != Content::ours) {
    run(("PRAGMA application_id = " + std::to_string(kApplicationId)).c_str());
    run(("PRAGMA user_version = " + std::to_string(kVersion)).c_str());
  }
  run("COMMIT");
  content_ = Content::ours;
}

bool Connection::hasMoved() const {
  int moved = 0;
  sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
  return moved != 0;
}

std::int64_t Connection::value(const std::string& key) {
  beginWaiting();
  // Another process may have begun it since.
  if (content_ == Content::nothing) content_ = judge();
  if (content_ == Content::nothing) return 0;
  return runFor(select_, kSelect, key).value_or(0);
}

std::optional<std::int64_t> Connection::increment(const std::string& key) {
  beginWaiting();
  if (content_ != Content::ours) becomeOurs();
  return runFor(increment_, kIncrement, key);
}

void Connection::removeAll(const std::string& prefix) {
  beginWaiting();
  if (content_ != Content::ours) becomeOurs();
  runFor(removeAll_, kRemoveAll, prefix);
}

Connection::Statement Connection::prepared(const char* sql) {
  sqlite3_stmt* statement = nullptr;
  check(
      sqlite3_prepare_v3(database_.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr));
  return Statement(statement);
}

/// The first column of the last row. Reads to the end, which is what commits the statement's work.
std::optional<std::int64_t> Connection::runFor(Statement& statement, const char* sql,
                                               const std::string& key) {
  if (!statement) statement = prepared(sql);
  check(sqlite3_bind_text64(statement.get(), 1, key.data(), key.size(), SQLITE_TRANSIENT,
                            SQLITE_UTF8));
  std::optional<std::int64_t> answer;
  while (step(statement.get())) answer = sqlite3_column_int64(statement.get(), 0);
  check(sqlite3_reset(statement.get()));
  return answer;
}

std::int64_t Connection::number(const char* sql) {
  const Statement statement = prepared(sql);
  std::int64_t answer = 0;
  while (step(statement.get())) answer = sqlite3_column_int64(statement.get(), 0);
  return answer;
}

std::string Connection::text(const char* sql) {
  const Statement statement = prepared(sql);
  std::string answer;
  while (step(statement.get()))
    if (const auto* column = sqlite3_column_text(statement.get(), 0))
      answer = reinterpret_cast<const char*>(column);
  return answer;
}

void Connection::run(const char* sql) { static_cast<void>(number(sql)); }

/// Whether there is a row.
bool Connection::step(sqlite3_stmt* statement) {
  const int code = sqlite3_step(statement);
  if (code != SQLITE_ROW) check(code);
  return code == SQLITE_ROW;
}

void Connection::check(int code) const {
  if (code == SQLITE_OK || code == SQLITE_DONE) return;
  const char* cause = database_ ? sqlite3_errmsg(database_.get()) : sqlite3_errstr(code);
  throw Error(kDomain, code, file_.string() + ": " + cause);
}

void Connection::failDamaged(const std::string& cause) const {
  throw Error(kDomain, SQLITE_CORRUPT, file_.string() + ": " + cause);
}

int Connection::waitWhileBusy(void* self, int /*attempts*/) {
  if (std::chrono::steady_clock::now() >= static_cast<Connection*>(self)->deadline_) return 0;
  std::this_thread::sleep_for(kBusyPoll);
  return 1;
}

namespace {

namespace fs = std::filesystem;

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;
constexpr std::chrono::milliseconds kLockPoll{2};
/// Where SQLite locks a file, and how many bytes.
constexpr off_t kLockBytes = 0x40000000;
constexpr off_t kLockLength = 512;

[[noreturn]] void fail(int code, const fs::path& path) {
  throw Error("POSIX", code, path.string() + ": " + std::generic_category().message(code));
}

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  [[nodiscard]] int number() const { return number_; }

 private:
  int number_;
};

/// Makes the file under a temporary name, so that it is private before it is at `path`.
void makeEmptyFile(const fs::path& path) {
  std::string name = path.string() + ".XXXXXX";
  const int descriptor = ::mkostemp(name.data(), O_CLOEXEC);
  if (descriptor < 0) fail(errno, path);
  ::fchmod(descriptor, kOwnerOnly);
  ::close(descriptor);
  const int code = ::link(name.c_str(), path.c_str()) == 0 ? 0 : errno;
  ::unlink(name.c_str());
  if (code != 0 && code != EEXIST) fail(code, path);
}

void takeFromOthers(const fs::path& path) {
  // Opened with O_PATH, so that the mode is set on the very file that was looked at.
  const Descriptor place(::open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  struct stat status {};
  if (place.number() < 0 || ::fstat(place.number(), &status) != 0) return;
  const bool isOurs = S_ISREG(status.st_mode) && status.st_uid == ::geteuid();
  if (!isOurs || (status.st_mode & (S_IRWXG | S_IRWXO)) == 0) return;
  const std::string self = "/proc/self/fd/" + std::to_string(place.number());
  ::chmod(self.c_str(), status.st_mode & S_IRWXU);
}

/// Tries `take` until it succeeds or `giveUpAt` has come.
template <class Take>
void lock(const fs::path& path, std::chrono::steady_clock::time_point giveUpAt, Take take) {
  while (!take()) {
    if (std::chrono::steady_clock::now() >= giveUpAt) fail(EBUSY, path);
    std::this_thread::sleep_for(kLockPoll);
  }
}

/// The folder of `path`, to be locked; below 0 when it can't be opened.
int openFolder(const fs::path& path) {
  return ::open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

/// Locks `folder` until it is closed. Also true where the file system knows no such locks.
bool holds(int folder, int kind) {
  return ::flock(folder, kind | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

/// Until `descriptor` is closed. Excludes every user of the database, even in other programs.
bool excludeFrom(int descriptor) {
  struct flock whole {};
  whole.l_type = F_WRLCK;
  whole.l_whence = SEEK_SET;
  whole.l_start = kLockBytes;
  whole.l_len = kLockLength;
  return ::fcntl(descriptor, F_OFD_SETLK, &whole) == 0;
}

}  // namespace

FileIdentity identityOf(const fs::path& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) return {};
  return {.device = status.st_dev, .number = status.st_ino};
}

fs::path requirePlainFile(const fs::path& path) {
  std::error_code ignored;
  const fs::path folder = fs::canonical(path.parent_path(), ignored);
  const fs::path plain = ignored ? path : folder / path.filename();
  const fs::file_type type = fs::symlink_status(plain, ignored).type();
  if (type == fs::file_type::symlink)
    throw Error("POSIX", ELOOP, path.string() + " is a symbolic link");
  const bool isNoFile = type == fs::file_type::fifo || type == fs::file_type::socket ||
                        type == fs::file_type::character || type == fs::file_type::block;
  if (isNoFile) throw Error("POSIX", EINVAL, path.string() + " is no file");
  return plain;
}

void makePrivateFolders(const fs::path& folder) {
  std::error_code ignored;
  if (folder.empty() || fs::is_directory(folder, ignored)) return;
  makePrivateFolders(folder.parent_path());
  if (::mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST)
    throw Error("POSIX", errno,
                "can't create " + folder.string() + ": " + std::generic_category().message(errno));
}

void makePrivate(const fs::path& path) {
  makePrivateFolders(path.parent_path());
  if (identityOf(path) == FileIdentity{}) makeEmptyFile(path);
  takeFromOthers(path);
}

Use::Use(const fs::path& store, std::chrono::milliseconds patience) : folder_(openFolder(store)) {
  if (folder_ < 0) return;
  try {
    lock(store, std::chrono::steady_clock::now() + patience,
         [&] { return holds(folder_, LOCK_SH); });
  } catch (const Error&) {
    ::close(folder_);
    throw;
  }
}

Use::~Use() {
  if (folder_ >= 0) ::close(folder_);
}

bool setAside(const fs::path& path, const FileIdentity& damaged,
              std::chrono::milliseconds patience) {
  const auto giveUpAt = std::chrono::steady_clock::now() + patience;
  const Descriptor folder(openFolder(path));
  if (folder.number() < 0) fail(errno, path);
  lock(path, giveUpAt, [&] { return holds(folder.number(), LOCK_EX); });
  const Descriptor file(::open(path.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC));
  if (file.number() < 0 && errno == ENOENT) return false;
  if (file.number() < 0) fail(errno, path);
  lock(path, giveUpAt, [&] { return excludeFrom(file.number()); });
  if (identityOf(path) != damaged) return false;
  // The file itself last: a new one must not find the old one's journal.
  for (const char* part : {"-journal", "-wal", "-shm", ""}) {
    const std::string from = path.string() + part;
    const std::string to = path.string() + ".damaged" + part;
    if (::rename(from.c_str(), to.c_str()) == 0) continue;
    if (errno != ENOENT || *part == '\0') fail(errno, path);
    ::unlink(to.c_str());  // An earlier damaged file's.
  }
  return true;
}

}  // namespace zelvora::sqlite
