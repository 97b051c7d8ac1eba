#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <type_traits>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

namespace sqlite {
class Connection;
struct FileIdentity;
}  // namespace sqlite

/// User defaults in one SQLite file, which several processes may share. An increment that was
/// answered outlives the process however it ends. Callable from any thread; not to be carried over
/// a fork.
///
/// The first increment creates the file and those of its folders that are missing. The file is for
/// the user alone, whatever the umask; reading creates nothing. After a failure the file is opened
/// anew by the next call. Errors name the file: domain "SQLite" with its extended result codes,
/// "POSIX" with errno, or "ZelvoraDefaults" for a database that another program (1) or a newer
/// version (2) wrote. Such a file and a symbolic link are never touched.
///
/// A damaged file is renamed to FILE.damaged, in the place of an earlier one, and counting begins
/// anew; one library line says so.
class SqliteDefaults final : public UserDefaults {
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
  /// What `operation` gives on the connection; absent when there is no file and none is
  /// to be created. Opens the file where it is not open and closes it when the operation fails. A
  /// file that was damaged or moved is met again.
  template <class Operation>
  auto perform(bool creates, Operation operation)
      -> std::optional<std::invoke_result_t<Operation, sqlite::Connection&>>;
  /// Whether there is a file.
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
