#pragma once

#include <memory>

#include <ZelvoraSDK/platform/system.h>

#include "common_options.h"

namespace zelvora::tool {

/// A bundle as the call changes it: an option stands in place of the property-list entry that it
/// overrides, and the key is "demo" where neither gives one.
std::shared_ptr<AppBundle> withOptions(std::shared_ptr<AppBundle> bundle,
                                       const CommonOptions& options);

}  // namespace zelvora::tool
