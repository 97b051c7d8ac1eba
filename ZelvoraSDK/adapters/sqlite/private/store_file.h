#pragma once

#include <chrono>
#include <filesystem>

namespace zelvora::sqlite {

// What the file of a store is to the file system. Every function throws Error in the domain "POSIX"
// where it can't do its work. None opens the file as such: closing it would drop the locks that
// other connections of this process hold on it.

/// Which file it is, whatever its name.
struct FileIdentity {
  unsigned long long device = 0;
  unsigned long long number = 0;

  bool operator==(const FileIdentity&) const = default;
};

/// The file at `path`, which is no symbolic link; {} when there is none.
[[nodiscard]] FileIdentity identityOf(const std::filesystem::path& path);

/// `path` with the links of its folder resolved, so that only the file itself can be one. Throws
/// when it is one, or anything else that is no file.
[[nodiscard]] std::filesystem::path requirePlainFile(const std::filesystem::path& path);

/// Makes a folder, and those above it, where they are missing, for the user alone.
void makePrivateFolders(const std::filesystem::path& folder);

/// Makes an empty file, and its folders where they are missing, for the user alone, whatever the
/// umask. Takes an existing file of this user's away from others.
void makePrivate(const std::filesystem::path& path);

/// Every call on a store holds one of these while it works. Nobody can set the store aside in the
/// meantime: SQLite finds a journal by the store's name, so a connection to a renamed file would
/// roll back the new store's journal and delete it.
class Use {
 public:
  /// Throws after `patience`. A folder that can't be opened is used without: nobody sets anything
  /// aside in it, either.
  Use(const std::filesystem::path& store, std::chrono::milliseconds patience);
  ~Use();
  Use(const Use&) = delete;
  Use& operator=(const Use&) = delete;

 private:
  int folder_;
};

/// Renames the damaged database `damaged` at `path` and what belongs to it to `path`.damaged, in
/// the place of an earlier one, while nobody uses it. REQUIRES: no Use of the caller's. False when
/// another process was faster. Throws after `patience`, which is how long it waits for users.
bool setAside(const std::filesystem::path& path, const FileIdentity& damaged,
              std::chrono::milliseconds patience);

}  // namespace zelvora::sqlite
