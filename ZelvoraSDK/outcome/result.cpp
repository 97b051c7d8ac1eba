#include <ZelvoraSDK/outcome/result.h>

#include <ZelvoraSDK/base/hash.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>

namespace zelvora {

void readJson(const JsonCursor& in, ZelvoraChoice& choice) {
  in.read("taskId", choice.taskId);
  in.read("title", choice.title);
  in.read("confidence", choice.confidence);
  in.read("screenId", choice.screenId);
  in.read("params", choice.params);
}

void writeJson(JsonWriter& out, const ZelvoraChoice& choice) {
  out.beginObject();
  out.member("taskId", choice.taskId);
  out.member("title", choice.title);
  out.member("confidence", choice.confidence);
  out.member("screenId", choice.screenId);
  out.member("params", choice.params);
  out.endObject();
}

}  // namespace zelvora

std::size_t std::hash<zelvora::ZelvoraChoice>::operator()(
    const zelvora::ZelvoraChoice& choice) const noexcept {
  zelvora::HashBuilder builder;
  builder.add(choice.taskId).add(choice.title).add(choice.confidence).add(choice.screenId);
  if (choice.params) builder.add(*choice.params);
  return builder.hash();
}
