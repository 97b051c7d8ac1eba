#include <ZelvoraSDK/adapters/sndfile/sound_files.h>

#include <fcntl.h>
#include <sndfile.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/limits.h>

namespace zelvora {
namespace {

struct CloseFile {
  void operator()(SNDFILE* file) const { sf_close(file); }
};
using File = std::unique_ptr<SNDFILE, CloseFile>;

/// libsndfile's error for `file`; for a null file, that of the last opening.
Error failure(SNDFILE* file, const std::string& what) {
  return {"ZelvoraAudioFile", sf_error(file), what + ": " + sf_strerror(file)};
}

AudioFormat formatOf(const SF_INFO& info) {
  return {.sampleRate = static_cast<double>(info.samplerate),
          .channels = static_cast<std::uint32_t>(info.channels)};
}

/// A nameless file with these bytes, at its start. The caller owns the descriptor.
int memoryFile(std::string_view bytes) {
  const int descriptor = ::memfd_create("zelvora-sound", MFD_CLOEXEC);
  while (descriptor >= 0 && !bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written <= 0) break;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  ::lseek(descriptor, 0, SEEK_SET);
  return descriptor;
}

/// A header may claim anything, and from here on its claims cost memory and time.
const SF_INFO& requireSupported(const SF_INFO& info, const std::string& what) {
  const auto refuse = [&](const std::string& why) {
    throw Error("ZelvoraAudioFile", SF_ERR_UNSUPPORTED_ENCODING, "can't read " + what + ": " + why);
  };
  const AudioFormat format = formatOf(info);
  if (info.channels < 1 || !isSupportedSound(format.sampleRate, format.channels))
    refuse(std::to_string(info.samplerate) + " Hz and " + std::to_string(info.channels) +
           " channels; " + std::to_string(kMinSampleRate) + " to " +
           std::to_string(kMaxSampleRate) + " Hz and up to " + std::to_string(kMaxSoundChannels) +
           " channels are supported");
  if (info.frames > std::chrono::seconds(kMaxSoundLength).count() * info.samplerate)
    refuse("longer than " + std::to_string(kMaxSoundLength.count()) + " minutes");
  return info;
}

}  // namespace

void SoundReader::Close::operator()(sf_private_tag* file) const { sf_close(file); }

SoundReader::SoundReader(const std::filesystem::path& path) {
  SF_INFO info{};
  file_.reset(sf_open(path.c_str(), SFM_READ, &info));
  if (!file_) throw failure(nullptr, "can't read " + path.string());
  format_ = formatOf(requireSupported(info, path.string()));
}

SoundReader SoundReader::ofBytes(std::string_view bytes) {
  SF_INFO info{};
  File file(sf_open_fd(memoryFile(bytes), SFM_READ, &info, SF_TRUE));
  if (!file) throw failure(nullptr, "can't read the sound");
  requireSupported(info, "the sound");
  return {file.release(), formatOf(info)};
}

std::size_t SoundReader::read(std::vector<float>& samples) {
  const auto size = static_cast<sf_count_t>(samples.size());
  const sf_count_t got = sf_read_float(file_.get(), samples.data(), size);
  if (sf_error(file_.get()) != SF_ERR_NO_ERROR) throw failure(file_.get(), "can't read on");
  std::fill(samples.begin() + got, samples.end(), 0.0F);
  // A file of floats may hold anything, even NaN.
  for (float& sample : samples) sample = std::isnan(sample) ? 0 : std::clamp(sample, -1.0F, 1.0F);
  return static_cast<std::size_t>(got);
}

namespace {

constexpr mode_t kOwnersOnly = S_IRUSR | S_IWUSR;

/// -1 where the file system has no nameless files.
int createNameless(const std::filesystem::path& folder) {
  return ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, kOwnersOnly);
}

bool giveName(int descriptor, const std::filesystem::path& path) {
  const std::string self = "/proc/self/fd/" + std::to_string(descriptor);
  return ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

/// The file has its name a moment before its lock: the best we can do without nameless files.
int createNamed(const std::filesystem::path& path) {
  const int descriptor = ::open(path.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, kOwnersOnly);
  const int code = errno;
  if (descriptor < 0)
    throw Error("POSIX", code,
                "can't create " + path.string() + ": " + std::generic_category().message(code));
  ::flock(descriptor, LOCK_EX | LOCK_NB);
  return descriptor;
}

/// A new empty file, locked until its descriptor is closed, which the system does when the process
/// ends. Where possible it is locked before it has a name. The caller owns the descriptor. Throws
/// Error.
int createLocked(const std::filesystem::path& path) {
  const int descriptor = createNameless(path.parent_path());
  if (descriptor >= 0 && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 && giveName(descriptor, path))
    return descriptor;
  if (descriptor >= 0) ::close(descriptor);
  return createNamed(path);
}

/// Whether the lock of the file at `path` is free; false when that is unknown.
bool canBeLocked(const std::filesystem::path& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
  if (descriptor < 0) return false;
  const bool locked = ::flock(descriptor, LOCK_SH | LOCK_NB) == 0;
  ::close(descriptor);
  return locked;
}

class SndfileWriter final : public AudioFileWriter {
 public:
  SndfileWriter(const std::filesystem::path& path, const AudioFormat& format) : format_(format) {
    SF_INFO info{.samplerate = static_cast<int>(format.sampleRate),
                 .channels = static_cast<int>(format.channels),
                 .format = SF_FORMAT_CAF | SF_FORMAT_FLOAT};
    const int descriptor = createLocked(path);
    file_.reset(sf_open_fd(descriptor, SFM_WRITE, &info, SF_TRUE));
    if (!file_) throw failure(nullptr, "can't record to " + path.string());
    sf_command(file_.get(), SFC_SET_SCALE_INT_FLOAT_WRITE, nullptr, SF_TRUE);
  }

  void write(const PcmBuffer& buffer) override {
    if (buffer.format != format_)
      throw Error("ZelvoraAudioFile", SF_ERR_UNSUPPORTED_ENCODING, "sound of another format came");
    const auto frames = static_cast<sf_count_t>(buffer.frames);
    if (framesWritten(buffer, frames) != frames) throw failure(file_.get(), "can't record");
  }

  void flush() override {
    // Only the header's count of bytes is out of date.
    sf_command(file_.get(), SFC_UPDATE_HEADER_NOW, nullptr, 0);
    if (sf_error(file_.get()) != SF_ERR_NO_ERROR) throw failure(file_.get(), "can't record");
  }

 private:
  sf_count_t framesWritten(const PcmBuffer& buffer, sf_count_t frames) {
    if (const auto* floats = std::get_if<std::span<const float>>(&buffer.samples))
      return sf_writef_float(file_.get(), floats->data(), frames);
    if (const auto* integers = std::get_if<std::span<const std::int16_t>>(&buffer.samples))
      return sf_writef_short(file_.get(), integers->data(), frames);
    return frames;
  }

  AudioFormat format_;
  File file_;
};

}  // namespace

std::unique_ptr<AudioFileWriter> SndfileRecordings::create(const std::filesystem::path& path,
                                                           const AudioFormat& format) {
  return std::make_unique<SndfileWriter>(path, format);
}

bool SndfileRecordings::isAbandoned(const std::filesystem::path& path) { return canBeLocked(path); }

}  // namespace zelvora
