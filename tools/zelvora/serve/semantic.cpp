#include "semantic.h"

#include <ZelvoraSDK/base/json_write.h>

#include "search.h"

namespace zelvora::serve {

std::string semanticAnswer(const std::vector<Destination>& tasks, std::string_view text,
                           std::string_view locale, std::int64_t topK) {
  return jsonObject([&](JsonWriter& out) {
    out.key("matches");
    out.beginArray();
    for (const Hit& hit : search(tasks, text, locale)) {
      if (topK-- <= 0) break;
      out.beginObject();
      out.member("taskId", tasks[hit.index].id);
      out.member("confidence", hit.confidence);
      out.endObject();
    }
    out.endArray();
  });
}

}  // namespace zelvora::serve
