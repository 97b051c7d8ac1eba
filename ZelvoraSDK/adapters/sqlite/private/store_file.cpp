#include <ZelvoraSDK/adapters/sqlite/private/store_file.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>
#include <thread>

#include <ZelvoraSDK/base/error.h>

namespace zelvora::sqlite {
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

/// Through a name of its own: the file is never at `path` before it is private.
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
  // Opened as a place only: the mode is that of the file that was looked at.
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

/// Until `descriptor` is closed. Also true where the file system knows no such locks.
bool holds(int folder, int kind) {
  return ::flock(folder, kind | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

/// Until `descriptor` is closed. Excludes every user of the database, also those that are not ours.
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
