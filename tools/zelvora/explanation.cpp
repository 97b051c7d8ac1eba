#include "explanation.h"

#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/facade/local_stage.h>
#include <ZelvoraSDK/routing/local_router.h>

#include "result_output.h"

namespace zelvora::tool {
namespace {

void writeCandidates(JsonWriter& out, const std::vector<ExpandedCandidate>& candidates) {
  out.beginArray();
  for (const ExpandedCandidate& candidate : candidates) {
    out.beginObject();
    out.member("text", candidate.text);
    out.member("reason", rawValue(candidate.reason));
    out.member("weight", candidate.weight);
    out.endObject();
  }
  out.endArray();
}

void writeTasks(JsonWriter& out, const std::vector<ScoredTask>& tasks) {
  out.beginArray();
  for (const ScoredTask& scored : tasks) {
    out.beginObject();
    out.member("taskId", scored.task->taskId);
    out.member("score", scored.score);
    out.member("confidence", scored.confidence);
    out.endObject();
  }
  out.endArray();
}

}  // namespace

Explanation explain(const std::string& text, const PreparedSpec& spec,
                    const ZelvoraSettings& settings, const Platform& platform) {
  Explanation explanation{.text = text};
  explanation.normalized = cleanUtterance(text, spec, settings.locale).normalized;
  if (explanation.normalized.empty()) {
    explanation.result = nothingSaid();
    return explanation;
  }
  if (!spec.tasks()) {
    explanation.result = decide({}, 0, spec.thresholds());
    return explanation;
  }
  LocalAnswer answer =
      answerLocally(explanation.normalized, spec, settings.locale, ZelvoraLocalRouter(platform.log),
                    {.lastResult = {}, .now = platform.clock->now()});
  explanation.candidates = std::move(answer.candidates);
  explanation.result = std::move(answer.result);
  explanation.tasks = spec.tasks()->rank(explanation.normalized);
  return explanation;
}

std::string explanationLine(const Explanation& explanation) {
  return jsonObject([&](JsonWriter& out) {
    out.member("text", explanation.text);
    out.member("normalized", explanation.normalized);
    out.key("candidates");
    writeCandidates(out, explanation.candidates);
    out.key("tasks");
    writeTasks(out, explanation.tasks);
    out.key("result");
    writeResult(out, explanation.result);
  });
}

}  // namespace zelvora::tool
