#pragma once

#include <string>

#include <ZelvoraSDK/outcome/audit_event.h>

namespace zelvora::tool {

/// `{"auditEvent":{"case":…}}` on one line, without a line end.
std::string auditEventLine(const ZelvoraAuditEvent& event);

}  // namespace zelvora::tool
