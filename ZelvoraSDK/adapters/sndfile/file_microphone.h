#pragma once

#include <filesystem>
#include <memory>

#include <ZelvoraSDK/adapters/sndfile/pace.h>
#include <ZelvoraSDK/platform/audio.h>

namespace zelvora {

/// A sound file of any format that libsndfile reads, heard as if it were said into a microphone:
/// buffer by buffer at the file's own rate and in its channels, each capture from the start.
///
/// After its end comes silence until the capture is stopped, as it does after a speaker's last
/// word: whoever listens decides by itself when that was it. The last buffer of the file is filled
/// up with silence. A file that turns out damaged ends the capture with an Error.
class FileMicrophone final : public AudioEngineFactory {
 public:
  /// Throws Error, of domain "ZelvoraAudioFile", when the file can't be read.
  FileMicrophone(std::filesystem::path file, std::shared_ptr<Pace> pace);
  std::unique_ptr<AudioEngine> makeEngine() override;

 private:
  std::filesystem::path file_;
  std::shared_ptr<Pace> pace_;
};

}  // namespace zelvora
