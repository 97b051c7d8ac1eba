#include <ZelvoraSDK/adapters/sqlite/sqlite_defaults.h>

#include <optional>
#include <string>
#include <utility>

#include <ZelvoraSDK/adapters/sqlite/private/store_file.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

/// A call tries again when the file is replaced under it, and fails when that happens every time.
constexpr int kMaxAttempts = 5;

}  // namespace

SqliteDefaults::SqliteDefaults(Options options)
    : options_(std::move(options)), opened_(std::make_unique<sqlite::FileIdentity>()) {
  // SQLite reads some names as something other than a file, but never an absolute path.
  options_.file = std::filesystem::absolute(options_.file);
}

SqliteDefaults::~SqliteDefaults() = default;

template <class Operation>
auto SqliteDefaults::perform(bool creates, Operation operation)
    -> std::optional<std::invoke_result_t<Operation, sqlite::Connection&>> {
  for (int attempt = 1;; ++attempt) {
    bool isOpen = false;
    try {
      if (creates && !connection_) sqlite::makePrivateFolders(options_.file.parent_path());
      const sqlite::Use use(options_.file, options_.busyTimeout);
      if (!open(creates)) return std::nullopt;
      isOpen = true;
      return operation(*connection_);
    } catch (const Error& error) {
      connection_.reset();
      const bool isDamaged = sqlite::isDamage(error);
      if (isDamaged && !isOpen) replace(error);
      const bool isAnotherFile = isDamaged || sqlite::isMoved(error) || (creates && hasNoFile());
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
  *opened_ = sqlite::identityOf(file);
  connection_ = std::make_unique<sqlite::Connection>(file, options_.busyTimeout);
  return true;
}

void SqliteDefaults::replace(const Error& cause) const {
  bool isMine = false;
  try {
    isMine = sqlite::setAside(options_.file, *opened_, options_.busyTimeout);
  } catch (const Error& error) {
    throw Error(error.domain(), error.code(),
                cause.description() + ", and it can't be set aside: " + error.description());
  }
  if (isMine && options_.log)
    options_.log->write("[Zelvora][Learning] counting begins anew, the old file is " +
                        options_.file.string() + ".damaged: " + cause.description());
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
