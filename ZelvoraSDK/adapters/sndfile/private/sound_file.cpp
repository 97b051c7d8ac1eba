#include <ZelvoraSDK/adapters/sndfile/private/sound_file.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include <ZelvoraSDK/base/error.h>

namespace zelvora::sound {
namespace {

constexpr mode_t kOwnersOnly = S_IRUSR | S_IWUSR;

/// -1 where the file system knows no files without a name.
int createNameless(const std::filesystem::path& folder) {
  return ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, kOwnersOnly);
}

bool giveName(int descriptor, const std::filesystem::path& path) {
  const std::string self = "/proc/self/fd/" + std::to_string(descriptor);
  return ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

/// The name comes a moment before the lock: the best there is without nameless files.
int createNamed(const std::filesystem::path& path) {
  const int descriptor = ::open(path.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, kOwnersOnly);
  const int code = errno;
  if (descriptor < 0)
    throw Error("POSIX", code,
                "can't create " + path.string() + ": " + std::generic_category().message(code));
  ::flock(descriptor, LOCK_EX | LOCK_NB);
  return descriptor;
}

}  // namespace

int createLocked(const std::filesystem::path& path) {
  const int descriptor = createNameless(path.parent_path());
  if (descriptor >= 0 && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 && giveName(descriptor, path))
    return descriptor;
  if (descriptor >= 0) ::close(descriptor);
  return createNamed(path);
}

bool canBeLocked(const std::filesystem::path& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
  if (descriptor < 0) return false;
  const bool locked = ::flock(descriptor, LOCK_SH | LOCK_NB) == 0;
  ::close(descriptor);
  return locked;
}

}  // namespace zelvora::sound
