#include <ZelvoraSDK/ui/audit_value.h>

#include <variant>

namespace zelvora {
namespace {

struct Converter {
  AuditValue operator()(const LocalSTTUsed& event) const {
    return {.kind = QStringLiteral("localSTTUsed"),
            .transcriptLength = static_cast<qsizetype>(event.transcriptLength)};
  }
  AuditValue operator()(const CloudSTTRequested& event) const {
    return {.kind = QStringLiteral("cloudSTTRequested"),
            .audioBytes = static_cast<qsizetype>(event.audioBytes)};
  }
  AuditValue operator()(const CloudSTTUsed& event) const {
    return {.kind = QStringLiteral("cloudSTTUsed"),
            .transcriptLength = static_cast<qsizetype>(event.transcriptLength)};
  }
  AuditValue operator()(const CloudSTTFailed& event) const {
    return {.kind = QStringLiteral("cloudSTTFailed"),
            .message = QString::fromStdString(event.message)};
  }
};

}  // namespace

AuditValue auditValue(const ZelvoraAuditEvent& event) { return std::visit(Converter{}, event); }

}  // namespace zelvora
