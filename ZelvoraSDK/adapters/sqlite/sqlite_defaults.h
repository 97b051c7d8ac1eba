#pragma once

#include <chrono>
#include <filesystem>
#include <memory>

#include <ZelvoraSDK/async/guarded.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// User defaults in one SQLite file, which several processes may share. An increment that was
/// answered outlives the process however it ends. Callable from any thread; not to be carried over
/// a fork.
///
/// The first increment creates the file and those of its folders that are missing, readable by the
/// user alone; reading creates nothing. After a failure the file is opened anew by the next call.
/// Errors name the file: domain "SQLite" with its extended result codes, or "POSIX" with errno.
class SqliteDefaults final : public UserDefaults {
 public:
  struct Options {
    std::filesystem::path file;
    /// The longest that a call waits for other processes that hold the file.
    std::chrono::milliseconds busyTimeout{2000};
  };

  explicit SqliteDefaults(Options options);
  ~SqliteDefaults() override;

  std::int64_t integer(const std::string& key) override;
  std::int64_t increment(const std::string& key) override;

 private:
  class Connection;
  using Slot = std::unique_ptr<Connection>;

  /// What `operation` gives on the connection in `slot`; opened when there is none, closed when
  /// the operation fails.
  template <class Operation>
  auto perform(Slot& slot, Operation operation) const;
  [[nodiscard]] bool hasNoFile() const;

  Options options_;
  Guarded<Slot> connection_;
};

}  // namespace zelvora
