#include <ZelvoraSDK/adapters/sndfile/sound_reader.h>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>

#include <ZelvoraSDK/adapters/sndfile/private/sound_file.h>
#include <ZelvoraSDK/base/limits.h>

namespace zelvora {
namespace {

using sound::failure;

AudioFormat formatOf(const SF_INFO& info) {
  return {.sampleRate = static_cast<double>(info.samplerate),
          .channels = static_cast<std::uint32_t>(info.channels)};
}

/// The bytes as a file without a name, at its start. The descriptor is the caller's.
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

/// A header may say anything, and what it says costs memory and time from here on.
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
  sound::File file(sf_open_fd(memoryFile(bytes), SFM_READ, &info, SF_TRUE));
  if (!file) throw failure(nullptr, "can't read the sound");
  requireSupported(info, "the sound");
  return {file.release(), formatOf(info)};
}

std::size_t SoundReader::read(std::vector<float>& samples) {
  const auto size = static_cast<sf_count_t>(samples.size());
  const sf_count_t got = sf_read_float(file_.get(), samples.data(), size);
  if (sf_error(file_.get()) != SF_ERR_NO_ERROR) throw failure(file_.get(), "can't read on");
  std::fill(samples.begin() + got, samples.end(), 0.0F);
  // A file of floats may hold anything, NaN too.
  for (float& sample : samples) sample = std::isnan(sample) ? 0 : std::clamp(sample, -1.0F, 1.0F);
  return static_cast<std::size_t>(got);
}

}  // namespace zelvora
