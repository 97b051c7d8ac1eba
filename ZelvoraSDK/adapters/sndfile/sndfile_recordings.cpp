#include <ZelvoraSDK/adapters/sndfile/sndfile_recordings.h>

#include <ZelvoraSDK/adapters/sndfile/private/sound_file.h>
#include <ZelvoraSDK/base/error.h>

namespace zelvora {
namespace {

using sound::failure;
using sound::File;

class SndfileWriter final : public AudioFileWriter {
 public:
  SndfileWriter(const std::filesystem::path& path, const AudioFormat& format) : format_(format) {
    SF_INFO info{.samplerate = static_cast<int>(format.sampleRate),
                 .channels = static_cast<int>(format.channels),
                 .format = SF_FORMAT_CAF | SF_FORMAT_FLOAT};
    const int descriptor = sound::createLocked(path);
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
    // Writing left only the header's count of bytes behind.
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

bool SndfileRecordings::isAbandoned(const std::filesystem::path& path) {
  return sound::canBeLocked(path);
}

}  // namespace zelvora
