#pragma once

#include <span>

#include <ZelvoraSDK/routing/private/task_index.h>
#include <ZelvoraSDK/spec/task_spec.h>

namespace zelvora {

/// Compiles the keywords and examples of a task list. More than 2^28 words and tasks are fatal.
[[nodiscard]] TaskIndex indexTasks(std::span<const ZelvoraTaskSpec> tasks);

}  // namespace zelvora
