// Any body is a list of matches or ends in one Error; a task is found only by a match sure enough.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <ZelvoraSDK/backend/exchange.h>
#include <ZelvoraSDK/backend/semantic.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zelvora;
  ZelvoraTaskSpec task;
  task.taskId = "a";
  task.screenId = "screen";
  try {
    const auto answer = readSemanticAnswer({200, {reinterpret_cast<const char*>(data), size}});
    const bool found = semanticResult(answer.matches, {task}, {}).has_value();
    const bool sure = !answer.matches.empty() && answer.matches.front().taskId == "a" &&
                      answer.matches.front().confidence >= 0.62;
    if (found != sure) std::abort();
  } catch (const Error& failure) {
    if (!isValidUtf8(failure.description()) || failure.description().empty()) std::abort();
  }
  return 0;
}
