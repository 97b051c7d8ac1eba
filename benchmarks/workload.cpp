#include <benchmarks/workload.h>

#include <map>
#include <utility>

#include <ZelvoraSDK/base/json_read.h>
#include <tests/support/app_generator.h>

namespace zelvora::bench {
namespace {

constexpr std::uint64_t kSeed = 20240607;
constexpr std::size_t kUtterances = 1000;
constexpr std::size_t kLongUtterance = 10000;

Workload make(std::size_t taskCount) {
  testing::AppGenerator generator(kSeed);
  std::vector<std::string> utterances = generator.utterances(kUtterances);
  std::string longUtterance = generator.utteranceOf(kLongUtterance);
  std::string json = generator.specJson(taskCount);
  auto spec = decodeJson<RuntimeSpec>(json);
  CompiledTasks compiled(spec.tasks());
  return {std::move(json), std::move(spec), std::move(compiled), std::move(utterances),
          std::move(longUtterance)};
}

}  // namespace

const Workload& workload(std::size_t taskCount) {
  static std::map<std::size_t, Workload> made;
  const auto found = made.find(taskCount);
  if (found != made.end()) return found->second;
  return made.emplace(taskCount, make(taskCount)).first->second;
}

}  // namespace zelvora::bench
