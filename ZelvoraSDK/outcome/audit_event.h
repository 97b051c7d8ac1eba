#pragma once

#include <cstddef>
#include <string>
#include <variant>

namespace zelvora {

/// The on-device transcript is used.
struct LocalSTTUsed {
  std::size_t transcriptLength = 0;  ///< In characters.
  bool operator==(const LocalSTTUsed&) const = default;
};

/// Audio is about to be sent to the cloud recogniser.
struct CloudSTTRequested {
  std::size_t audioBytes = 0;
  bool operator==(const CloudSTTRequested&) const = default;
};

/// The cloud transcript is used.
struct CloudSTTUsed {
  std::size_t transcriptLength = 0;  ///< In characters.
  bool operator==(const CloudSTTUsed&) const = default;
};

/// The cloud recogniser failed.
struct CloudSTTFailed {
  std::string message;  ///< Describes the failure.
  bool operator==(const CloudSTTFailed&) const = default;
};

/// An observable fact about speech recognition.
using ZelvoraAuditEvent =
    std::variant<LocalSTTUsed, CloudSTTRequested, CloudSTTUsed, CloudSTTFailed>;

}  // namespace zelvora
