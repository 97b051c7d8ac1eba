#pragma once

#include <functional>
#include <optional>
#include <string>

#include <ZelvoraSDK/outcome/audit_event.h>
#include <ZelvoraSDK/outcome/result.h>

#include "application.h"

namespace zelvora::tool {

/// What came of one spoken command.
struct Heard {
  std::optional<std::string> transcript;  ///< What was routed; absent when nothing was.
  ZelvoraResult result;
  /// What the device made of it, routed or not, and how sure it was.
  std::string deviceTranscript;
  std::optional<double> deviceConfidence;
  std::optional<AudioData> recording;
};

/// Whom to tell while it is going on, on the application's main loop; any may be unset.
struct ListeningObserver {
  std::function<void(ZelvoraAuditEvent)> onAuditEvent;
  std::function<void(float level)> onLevel;
  /// Whether the capture runs, and the text so far.
  std::function<void(bool isRecording, const std::string& text)> onChange;
  std::function<void(const std::string& message)> onError;
};

/// Listens to one command on the application's main loop and waits for its one outcome. A capture
/// that ends by itself, and an interrupt from the keyboard, stop it; a second interrupt ends the
/// program. REQUIRES: speech is enabled and the façade was not called yet.
Heard listen(Application& application, const ListeningObserver& observer);

}  // namespace zelvora::tool
