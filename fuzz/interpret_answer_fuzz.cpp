// Any body is read as JSON or as text, or ends in one Error of the client; what is read converts.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/backend/exchange.h>
#include <ZelvoraSDK/backend/interpret.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>

namespace {

using namespace zelvora;

constexpr std::string_view kIdCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-";

void require(bool holds) {
  if (!holds) std::abort();
}

void readAsText(std::string_view body) {
  if (!isValidUtf8(body)) return;
  const auto response = readTextAnswer(body);
  if (!response) return;
  const std::string& id = response->task->id;
  const std::string& say = *response->say;
  require(!id.empty() && id.find_first_not_of(kIdCharacters) == id.npos);
  require(response->task->confidence >= 0 && response->task->confidence <= 1);
  require(isValidUtf8(say) && (say == "OK" || body.find(say) != body.npos));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string body(reinterpret_cast<const char*>(data), size);
  readAsText(body);
  try {
    ZelvoraTaskSpec task;
    task.taskId = "id";
    task.action = ZelvoraTaskAction{"present", "sheet", {}};
    static_cast<void>(interpretedResult(readInterpretAnswer({200, body}), {task}));
  } catch (const Error& failure) {
    require(failure.domain() == kClientErrorDomain && failure.code() == 200);
    require(isValidUtf8(failure.description()));
  }
  return 0;
}
