#pragma once

#include <functional>

#include <ZelvoraSDK/outcome/audit_event.h>
#include <ZelvoraSDK/outcome/result.h>

namespace zelvora {

/// What the application wants to be told. Called on the main executor; any may be unset.
struct Callbacks {
  std::function<void(ZelvoraResult)> onResult;          ///< Every outcome.
  std::function<void(ZelvoraAuditEvent)> onAuditEvent;  ///< Facts about speech recognition.
};

}  // namespace zelvora
