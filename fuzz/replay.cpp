// Runs the seeds of one fuzz target, without a fuzzer: fuzz_replay TARGET FOLDER

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/base/text.h>

// For each target: extern "C" int fuzz_NAME(const std::uint8_t*, std::size_t);
#define ZELVORA_FUZZ_TARGET(name) extern "C" int fuzz_##name(const std::uint8_t*, std::size_t);
#include "fuzz_targets.inc"
#undef ZELVORA_FUZZ_TARGET

namespace {

struct Target {
  std::string_view name;
  int (*run)(const std::uint8_t*, std::size_t);
};

constexpr Target kTargets[] = {
#define ZELVORA_FUZZ_TARGET(name) {#name, &fuzz_##name},
#include "fuzz_targets.inc"
#undef ZELVORA_FUZZ_TARGET
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const auto* const target = std::ranges::find(kTargets, std::string_view(argv[1]), &Target::name);
  if (target == std::end(kTargets)) return 2;
  int seeds = 0;
  for (const auto& entry : std::filesystem::directory_iterator(argv[2])) {
    std::cout << entry.path().string() << std::endl;  // Before a crash.
    const std::string bytes = zelvora::readFile(entry.path());
    target->run(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    ++seeds;
  }
  std::cout << seeds << " seeds\n";
  return seeds > 0 ? 0 : 1;
}
