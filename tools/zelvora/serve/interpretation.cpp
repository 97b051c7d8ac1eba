#include "interpretation.h"

#include <algorithm>

#include <ZelvoraSDK/base/json_write.h>

#include "search.h"

namespace zelvora::serve {
namespace {

constexpr double kExecuteConfidence = 0.6;
constexpr double kChoicesConfidence = 0.2;  ///< Of the best; below it nothing was understood.
constexpr double kChoiceShare = 0.5;        ///< Of the best's confidence, for each choice.
constexpr std::size_t kMaxChoices = 4;

void writeExecution(JsonWriter& out, const Destination& destination, double confidence) {
  out.member("mode", "execute");
  out.key("task");
  out.beginObject();
  out.member("id", destination.id);
  out.member("confidence", confidence);
  out.endObject();
  out.member("say", destination.say.value_or("Opening: " + destination.title));
  out.member("screenId", destination.screenId);
  out.member("params", destination.params);
}

void writeChoice(JsonWriter& out, const Destination& destination, double confidence) {
  out.beginObject();
  out.member("task_id", destination.id);
  out.member("title", destination.title);
  out.member("confidence", confidence);
  out.member("screenId", destination.screenId);
  out.member("params", destination.params);
  out.endObject();
}

void writeChoices(JsonWriter& out, const std::vector<Destination>& destinations,
                  const std::vector<Hit>& hits) {
  out.member("mode", "show_choices");
  out.member("say", "Did you mean one of these?");
  out.key("choices");
  out.beginArray();
  for (std::size_t at = 0; at < std::min(hits.size(), kMaxChoices); ++at)
    if (hits[at].confidence >= kChoiceShare * hits.front().confidence)
      writeChoice(out, destinations[hits[at].index], hits[at].confidence);
  out.endArray();
}

void writeUnsupported(JsonWriter& out) {
  out.member("mode", "unsupported");
  out.member("say", "Nothing in this application or its catalogue fits that.");
}

}  // namespace

std::string interpretationAnswer(const std::vector<Destination>& destinations,
                                 std::string_view text, std::string_view locale) {
  const std::vector<Hit> hits = search(destinations, text, locale);
  const double best = hits.empty() ? 0 : hits.front().confidence;
  return jsonObject([&](JsonWriter& out) {
    if (best >= kExecuteConfidence)
      writeExecution(out, destinations[hits.front().index], best);
    else if (best >= kChoicesConfidence)
      writeChoices(out, destinations, hits);
    else
      writeUnsupported(out);
  });
}

}  // namespace zelvora::serve
