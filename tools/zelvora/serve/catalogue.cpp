#include "catalogue.h"

#include <algorithm>

#include <ZelvoraSDK/base/json_write.h>

#include "search.h"

namespace zelvora::serve {
namespace {

/// The library opens whatever screen it is told, so a doubtful item is better not named.
constexpr double kNavigateConfidence = 0.6;
constexpr std::size_t kMaxChoices = 3;

void writeNavigation(JsonWriter& out, const Destination& item, double score) {
  out.member("intent", "navigate");
  out.member("screenId", item.screenId);
  out.member("params", item.params);
  out.member("score", score);
  out.member("say", item.say);
}

void writeChoices(JsonWriter& out, const std::vector<Destination>& items,
                  const std::vector<Hit>& hits) {
  out.member("intent", "none");
  out.key("choices");
  out.beginArray();
  for (std::size_t at = 0; at < std::min(hits.size(), kMaxChoices); ++at) {
    out.beginObject();
    out.member("id", items[hits[at].index].id);
    out.member("title", items[hits[at].index].title);
    out.endObject();
  }
  out.endArray();
}

}  // namespace

std::string catalogueAnswer(const std::vector<Destination>& items, std::string_view query) {
  const std::vector<Hit> hits = search(items, query, "en");
  return jsonObject([&](JsonWriter& out) {
    if (!hits.empty() && hits.front().confidence >= kNavigateConfidence)
      writeNavigation(out, items[hits.front().index], hits.front().confidence);
    else
      writeChoices(out, items, hits);
  });
}

}  // namespace zelvora::serve
