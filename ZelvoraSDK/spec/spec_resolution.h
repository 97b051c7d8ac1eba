#pragma once

#include <memory>
#include <optional>

#include <ZelvoraSDK/spec/any_encodable.h>
#include <ZelvoraSDK/spec/runtime_spec.h>
#include <ZelvoraSDK/spec/zelvora_spec.h>

namespace zelvora {

/// A stored spec as the pipelines need it.
struct ResolvedSpec {
  std::shared_ptr<const ZelvoraSpec> spec;         ///< Never null.
  std::shared_ptr<const RuntimeSpec> runtimeSpec;  ///< The same, if it is a full spec; else null.
  std::optional<RuntimeSpec::Thresholds> thresholds;
};

/// Reads what `stored` encodes: as a full spec, else as a minimal one with at least one usable
/// task. Absent when it is neither. Validates nothing; never throws. Fatal on a minimal spec with a
/// task that breaks the record's preconditions.
std::optional<ResolvedSpec> resolveSpec(const AnyEncodable& stored);

}  // namespace zelvora
