#pragma once

#include <optional>
#include <string>

#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/outcome/result.h>

#include "output.h"

namespace zelvora::tool {

/// `result` as an object: "case" first, then the case's values in their own order, absent ones left
/// out.
void writeResult(JsonWriter& out, const ZelvoraResult& result);

/// `{"text":…,"result":…}` on one line, without a line end; without `text` when none was routed.
std::string routedLine(const std::optional<std::string>& text, const ZelvoraResult& result);

/// `result` for a person, several lines, each with its line end.
std::string friendlyResult(const ZelvoraResult& result, const Style& style);

}  // namespace zelvora::tool
