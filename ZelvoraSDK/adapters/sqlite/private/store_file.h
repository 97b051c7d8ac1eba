#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include <ZelvoraSDK/base/error.h>

struct sqlite3;
struct sqlite3_stmt;

namespace zelvora::sqlite {

/// Whether the file is damaged, as opposed to locked, full or read-only.
[[nodiscard]] bool isDamage(const Error& error);
/// Whether the file has lost its name, before it was opened or since.
[[nodiscard]] bool isMoved(const Error& error);

/// One open store. Not thread-safe. Unusable once a call has thrown. Opening checks that the file
/// is an intact store of ours, and changes nothing in it.
class Connection {
 public:
  /// REQUIRES: `file` is a result of `requirePlainFile`, and exists.
  Connection(std::filesystem::path file, std::chrono::milliseconds busyTimeout);

  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Whether the file that is open no longer has its name.
  [[nodiscard]] bool hasMoved() const;

  std::int64_t value(const std::string& key);
  /// The new value; absent when there is no larger one.
  std::optional<std::int64_t> increment(const std::string& key);
  /// Removes every key that begins with `prefix`.
  void removeAll(const std::string& prefix);

 private:
  enum class Content {
    nothing,  ///< Not even a table.
    adopted,  ///< Our table, without our mark.
    ours,
  };
  struct Close {
    void operator()(sqlite3* database) const;
    void operator()(sqlite3_stmt* statement) const;
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Close>;

  void open();
  [[nodiscard]] Content judge();
  [[nodiscard]] Content judgeSchema(std::int64_t id);
  void requireHeader();
  void requireIntegrity();
  void becomeOurs();
  [[nodiscard]] std::int64_t number(const char* sql);
  [[nodiscard]] std::string text(const char* sql);
  Statement prepared(const char* sql);
  std::optional<std::int64_t> runFor(Statement& statement, const char* sql, const std::string& key);
  bool step(sqlite3_stmt* statement);
  void run(const char* sql);
  void check(int code) const;
  [[noreturn]] void failDamaged(const std::string& cause) const;
  void beginWaiting() { deadline_ = std::chrono::steady_clock::now() + busyTimeout_; }
  static int waitWhileBusy(void* self, int attempts);

  std::filesystem::path file_;
  std::chrono::milliseconds busyTimeout_;
  std::chrono::steady_clock::time_point deadline_;
  std::unique_ptr<sqlite3, Close> database_;
  Content content_ = Content::nothing;
  Statement select_;
  Statement increment_;
  Statement removeAll_;
};

// The store's file as the file system sees it. Every function throws Error in the domain "POSIX"
// when it fails. None opens the file for reading or writing, except `setAside` while nobody uses
// it: closing it would drop the locks that other connections of this process hold on it.

/// The identity of a file, independent of its name.
struct FileIdentity {
  unsigned long long device = 0;
  unsigned long long number = 0;

  bool operator==(const FileIdentity&) const = default;
};

/// The file at `path`, which is no symbolic link; {} when it does not exist.
[[nodiscard]] FileIdentity identityOf(const std::filesystem::path& path);

/// `path` with the links of its folder resolved, so that only the file itself can be a link. Throws
/// when it is a link, a device, a socket or a pipe.
[[nodiscard]] std::filesystem::path requirePlainFile(const std::filesystem::path& path);

/// Makes a folder and its missing parents, for the user alone.
void makePrivateFolders(const std::filesystem::path& folder);

/// Makes an empty file and its missing folders, for the user alone, whatever the umask. Makes an
/// existing file of this user's private too.
void makePrivate(const std::filesystem::path& path);

/// Every call on a store holds a Use while it works, so that the store can't be set aside: SQLite
/// finds a journal by the store's name, so a connection to a renamed file would roll back the new
/// store's journal and delete it.
class Use {
 public:
  /// Throws after `patience`. A folder that can't be opened is not locked: nothing can be set
  /// aside in it, either.
  Use(const std::filesystem::path& store, std::chrono::milliseconds patience);
  ~Use();
  Use(const Use&) = delete;
  Use& operator=(const Use&) = delete;

 private:
  int folder_;
};

/// Renames the damaged database `damaged` at `path` and what belongs to it to `path`.damaged,
/// replacing an earlier one, while nobody uses it. Waits for its users, and throws after
/// `patience`. REQUIRES: the caller holds no Use. False when another process was faster.
bool setAside(const std::filesystem::path& path, const FileIdentity& damaged,
              std::chrono::milliseconds patience);

}  // namespace zelvora::sqlite
