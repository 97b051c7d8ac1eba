#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include <ZelvoraSDK/adapters/sqlite/private/store_file.h>
#include <ZelvoraSDK/base/error.h>

struct sqlite3;
struct sqlite3_stmt;

namespace zelvora::sqlite {

/// Whether the file is damaged: not locked, full or read-only.
[[nodiscard]] bool isDamage(const Error& error);
/// Whether the file has lost its name, before it was opened or since.
[[nodiscard]] bool isMoved(const Error& error);

/// One open store. Not thread-safe. Of no further use once a call has thrown. Opening checks that
/// the file is a store of ours, whole, and changes nothing in it.
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

}  // namespace zelvora::sqlite
