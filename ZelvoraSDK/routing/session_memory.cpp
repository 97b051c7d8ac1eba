#include <ZelvoraSDK/routing/session_memory.h>

namespace zelvora {

void SessionMemory::update(const ZelvoraResult& result, Timestamp now) {
  if (const auto* execute = std::get_if<ZelvoraExecute>(&result))
    lastResult_ = {execute->taskId, execute->screenId, now};
  // A follow-up names a presentation as it would a screen, so its id takes the screen's place.
  if (const auto* present = std::get_if<ZelvoraPresent>(&result))
    lastResult_ = {present->taskId, present->presentationId, now};
}

bool SessionMemory::isWithinWindow(Seconds window, Timestamp now) const {
  return lastResult_ && lastResult_->isWithin(window, now);
}

}  // namespace zelvora
