#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <type_traits>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

namespace sqlite {
class Connection;
struct FileIdentity;
}  // namespace sqlite

/// User defaults in one SQLite file, which several processes may share. Once an increment has
/// returned, it outlives the process however that ends. Callable from any thread; must not be
/// carried over a fork.
///
/// The first increment creates the file and its missing folders. The file is for the user alone,
/// whatever the umask; reading creates nothing. After a failure the next call opens the file anew.
/// Errors name the file: domain "SQLite" with its extended result codes, "POSIX" with errno, or
/// "ZelvoraDefaults" for a database that another program (1) or a newer version (2) wrote. Such a
/// file and a symbolic link are never touched.
///
/// A damaged file is renamed to FILE.damaged, replacing an earlier one, and counting starts over;
/// one library line says so.
class ZELVORA_EXPORT SqliteDefaults final : public UserDefaults {
 public:
  struct Options {
    std::filesystem::path file;
    /// The longest that a call waits for other processes that hold the file.
    std::chrono::milliseconds busyTimeout{2000};
    /// Takes the line about a damaged file; may be null.
    std::shared_ptr<LogSink> log;
  };

  explicit SqliteDefaults(Options options);
  ~SqliteDefaults() override;

  std::int64_t integer(const std::string& key) override;
  std::int64_t increment(const std::string& key) override;
  void removeAll(const std::string& prefix) override;

 private:
  /// The result of `operation` on the connection; absent when there is no file and `creates` is
  /// false. Opens the file if necessary, closes it when the operation fails, and tries again when
  /// the file was damaged or moved.
  template <class Operation>
  auto perform(bool creates, Operation operation)
      -> std::optional<std::invoke_result_t<Operation, sqlite::Connection&>>;
  /// Opens the file unless it is open, and makes it first if `creates`. Returns false without one.
  bool open(bool creates);
  /// Sets aside the file that was opened last, which `cause` says is damaged.
  void replace(const Error& cause) const;
  [[nodiscard]] bool hasNoFile() const;

  Options options_;
  std::mutex mutex_;  ///< Guards what follows, and the operations above.
  std::unique_ptr<sqlite::FileIdentity> opened_;
  std::unique_ptr<sqlite::Connection> connection_;
};

}  // namespace zelvora
