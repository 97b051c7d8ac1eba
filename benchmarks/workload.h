#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <ZelvoraSDK/routing/local_router.h>
#include <ZelvoraSDK/spec/runtime_spec.h>

namespace zelvora::bench {

/// A generated application of one size, ready to be routed.
struct Workload {
  std::string json;
  RuntimeSpec spec;
  CompiledTasks compiled;
  std::vector<std::string> utterances;  ///< The same ones for every size.
  std::string longUtterance;            ///< 10 kB.
};

/// Made on first use and kept.
const Workload& workload(std::size_t taskCount);

}  // namespace zelvora::bench
