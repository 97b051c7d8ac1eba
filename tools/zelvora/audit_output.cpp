#include "audit_output.h"

#include <ZelvoraSDK/base/json_write.h>

namespace zelvora::tool {
namespace {

struct CaseWriter {
  JsonWriter& out;

  void operator()(const LocalSTTUsed& event) const {
    out.member("case", "localSTTUsed");
    out.member("transcriptLength", event.transcriptLength);
  }
  void operator()(const CloudSTTRequested& event) const {
    out.member("case", "cloudSTTRequested");
    out.member("audioBytes", event.audioBytes);
  }
  void operator()(const CloudSTTUsed& event) const {
    out.member("case", "cloudSTTUsed");
    out.member("transcriptLength", event.transcriptLength);
  }
  void operator()(const CloudSTTFailed& event) const {
    out.member("case", "cloudSTTFailed");
    out.member("message", event.message);
  }
};

}  // namespace

std::string auditEventLine(const ZelvoraAuditEvent& event) {
  return jsonObject([&](JsonWriter& out) {
    out.key("auditEvent");
    out.object([&](JsonWriter& fields) { std::visit(CaseWriter{fields}, event); });
  });
}

}  // namespace zelvora::tool
