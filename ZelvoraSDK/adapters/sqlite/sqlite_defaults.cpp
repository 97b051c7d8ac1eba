#include <ZelvoraSDK/adapters/sqlite/sqlite_defaults.h>

#include <optional>
#include <string>
#include <utility>

#include <ZelvoraSDK/adapters/sqlite/private/connection.h>
#include <ZelvoraSDK/adapters/sqlite/private/store_file.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

/// A file that is replaced under a call is met again; one that is replaced each time is a failure.
constexpr int kMaxAttempts = 5;

}  // namespace

SqliteDefaults::SqliteDefaults(Options options) : options_(std::move(options)) {
  // An absolute path can't be one of the names that SQLite reads as something else than a file.
  options_.file = std::filesystem::absolute(options_.file);
}

SqliteDefaults::~SqliteDefaults() = default;

template <class Operation>
auto SqliteDefaults::perform(bool creates, Operation operation)
    -> std::optional<std::invoke_result_t<Operation, sqlite::Connection&>> {
  for (int attempt = 1;; ++attempt) {
    try {
      if (!open(creates)) return std::nullopt;
      return operation(*connection_);
    } catch (const Error& error) {
      connection_.reset();
      const bool isAnotherFile =
          sqlite::isDamage(error) || sqlite::isMoved(error) || (creates && hasNoFile());
      if (!isAnotherFile || attempt == kMaxAttempts) throw;
    }
  }
}

bool SqliteDefaults::open(bool creates) {
  if (connection_ && connection_->hasMoved()) connection_.reset();
  if (connection_) return true;
  if (!creates && hasNoFile()) return false;
  static_cast<void>(sqlite::requirePlainFile(options_.file));
  if (creates) sqlite::makePrivate(options_.file);
  const std::filesystem::path file = sqlite::requirePlainFile(options_.file);
  const sqlite::FileIdentity identity = sqlite::identityOf(file);
  try {
    connection_ = std::make_unique<sqlite::Connection>(file, options_.busyTimeout);
  } catch (const Error& error) {
    if (sqlite::isDamage(error)) replace(file, identity, error);
    throw;
  }
  return true;
}

void SqliteDefaults::replace(const std::filesystem::path& damaged,
                             const sqlite::FileIdentity& identity, const Error& cause) const {
  bool isMine = false;
  try {
    isMine = sqlite::setAside(damaged, identity, options_.busyTimeout);
  } catch (const Error& error) {
    throw Error(error.domain(), error.code(),
                cause.description() + ", and it can't be set aside: " + error.description());
  }
  if (isMine && options_.log)
    options_.log->write("[Zelvora][Learning] counting begins anew, the old file is " +
                        damaged.string() + ".damaged: " + cause.description());
}

bool SqliteDefaults::hasNoFile() const {
  return sqlite::identityOf(options_.file) == sqlite::FileIdentity{};
}

std::int64_t SqliteDefaults::integer(const std::string& key) {
  const std::scoped_lock lock(mutex_);
  const auto value =
      perform(false, [&](sqlite::Connection& connection) { return connection.value(key); });
  return value.value_or(0);
}

std::int64_t SqliteDefaults::increment(const std::string& key) {
  const std::scoped_lock lock(mutex_);
  const auto value =
      perform(true, [&](sqlite::Connection& connection) { return connection.increment(key); });
  if (!*value) fatalError("The count under " + key + " would pass the largest integer");
  return **value;
}

void SqliteDefaults::removeAll(const std::string& prefix) {
  const std::scoped_lock lock(mutex_);
  perform(false, [&](sqlite::Connection& connection) {
    connection.removeAll(prefix);
    return true;
  });
}

}  // namespace zelvora
