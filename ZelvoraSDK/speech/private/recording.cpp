#include <ZelvoraSDK/speech/private/recording.h>

#include <chrono>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include <ZelvoraSDK/base/text.h>

namespace zelvora {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = "zelvora-";
constexpr std::string_view kSuffix = ".caf";
constexpr std::size_t kUuidLength = 36;

bool isRecordingName(const std::string& name) {
  return name.size() == kPrefix.size() + kUuidLength + kSuffix.size() &&
         name.starts_with(kPrefix) && name.ends_with(kSuffix);
}

std::optional<AudioData> bytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  if (!file) return std::nullopt;
  AudioData bytes(static_cast<std::size_t>(file.tellg()));
  file.seekg(0);
  file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (!file) return std::nullopt;
  return bytes;
}

void flushIfPossible(AudioFileWriter& writer) {
  try {
    writer.flush();
  } catch (const std::exception&) {
    // What is on disk by now is what there is.
  }
}

bool isAbandoned(AudioFileFactory& files, const fs::path& path) {
  std::error_code failed;
  const auto written = fs::last_write_time(path, failed);
  if (failed) return false;
  const Seconds age = fs::file_time_type::clock::now() - written;
  return age > kAbandonedAfter || files.isAbandoned(path);
}

}  // namespace

Recording::Recording(AudioFileFactory& files, const fs::path& directory, const AudioFormat& format)
    : path_(directory / (std::string(kPrefix).append(randomUuid()).append(kSuffix))),
      writer_(files.create(path_, format)) {}

Recording::~Recording() {
  std::error_code ignored;
  fs::remove(path_, ignored);
}

std::optional<AudioData> Recording::take() {
  // Read while the writer is still held, as the capture's end prescribes: hence the flush.
  flushIfPossible(*writer_);
  auto bytes = bytesOf(path_);
  std::error_code ignored;
  fs::remove(path_, ignored);
  return bytes;
}

void removeAbandonedRecordings(AudioFileFactory& files, const fs::path& directory) {
  std::error_code failed;
  for (fs::directory_iterator entry(directory, failed), end; !failed && entry != end;
       entry.increment(failed)) {
    std::error_code unreadable;
    const bool plainFile = entry->symlink_status(unreadable).type() == fs::file_type::regular;
    if (!plainFile || !isRecordingName(entry->path().filename().string())) continue;
    if (isAbandoned(files, entry->path())) fs::remove(entry->path(), unreadable);
  }
}

}  // namespace zelvora
