#include <ZelvoraSDK/outcome/task_action.h>

#include <ZelvoraSDK/base/hash.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>

namespace zelvora {

void readJson(const JsonCursor& in, ZelvoraTaskAction& action) {
  in.read("type", action.type);
  in.read("presentationId", action.presentationId);
  in.read("screenId", action.screenId);
}

void writeJson(JsonWriter& out, const ZelvoraTaskAction& action) {
  out.beginObject();
  out.member("type", action.type);
  out.member("presentationId", action.presentationId);
  out.member("screenId", action.screenId);
  out.endObject();
}

}  // namespace zelvora

std::size_t std::hash<zelvora::ZelvoraTaskAction>::operator()(
    const zelvora::ZelvoraTaskAction& action) const noexcept {
  return zelvora::HashBuilder{}
      .add(action.type)
      .add(action.presentationId)
      .add(action.screenId)
      .hash();
}
