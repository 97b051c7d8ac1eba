#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/platform/speech.h>
#include <ZelvoraSDK/platform/system.h>

namespace zelvora {

/// What a user of a desktop has agreed to by starting the program: everything.
class GrantedPermissions final : public Permissions {
 public:
  Awaitable<SpeechStatus> requestSpeechRecognition() override;
  Awaitable<bool> requestMicrophone() override;
};

/// What an application may choose about hearing and speaking.
struct HostSpeechOptions {
  /// What understands speech; null for this system's own recogniser, on the device.
  std::shared_ptr<SpeechRecognizerFactory> recognizers;
  /// Phrases for this system's own recogniser to expect besides those of the façade's spec.
  std::vector<std::string> vocabulary;
  /// The folder with the English models of this system's own recogniser. When it is empty, the
  /// recogniser looks in the usual places: see PocketsphinxRecognizerFactory.
  std::filesystem::path sphinxModels;
  /// A folder with a streaming transducer for English, heard with beside this system's own
  /// recogniser or, where `modelAlone` says so, in its place. Needs a build with sherpa-onnx.
  std::optional<std::filesystem::path> model;
  bool modelAlone = false;
  /// Asked before the first capture.
  std::shared_ptr<Permissions> permissions = std::make_shared<GrantedPermissions>();
  /// A sound file that is heard in real time instead of the microphone.
  std::optional<std::filesystem::path> soundFile;
};

/// The names of the recognisers that this build has, the default one first.
[[nodiscard]] std::vector<std::string> hostRecognizers();

/// This system's microphone, recordings, recogniser and voice. Throws Error when the sound file
/// can't be read, when speech was not built, or when a model is given that nothing can load.
/// `log` gets the recogniser's lines; null for none.
SpeechPlatform hostSpeech(const HostSpeechOptions& options, Executors& executors,
                          std::shared_ptr<LogSink> log = nullptr);

}  // namespace zelvora
