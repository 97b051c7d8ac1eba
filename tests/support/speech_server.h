#pragma once

#include <filesystem>
#include <optional>

#include <tests/support/subprocess.h>
#include <tests/support/temporary_folder.h>

namespace zelvora::testing {

/// A private speech-dispatcher that this process talks to, with its own home and runtime folder. It
/// plays on the sound server that PULSE_SERVER names when this is made. Throws when it can't start.
/// One at a time.
class SpeechServer {
 public:
  SpeechServer();
  void kill() { daemon_->kill(); }
  /// Where it listens.
  [[nodiscard]] std::filesystem::path socket() const { return folder_.path() / "run/speechd.sock"; }

 private:
  TemporaryFolder folder_;
  std::optional<Subprocess> daemon_;
};

}  // namespace zelvora::testing
