#include <ZelvoraSDK/backend/route_response.h>

#include <ZelvoraSDK/base/json_read.h>

namespace zelvora {

void readJson(const JsonCursor& in, RouteResponse::Task& task) {
  in.read("id", task.id);
  in.read("confidence", task.confidence);
}

void readJson(const JsonCursor& in, RouteResponse::PlanStep& step) {
  in.read("type", step.type);
  in.read("to", step.to);
  in.read("via", step.via);
}

void readJson(const JsonCursor& in, RouteResponse::Choice& choice) {
  in.read("task_id", choice.task_id);
  in.read("title", choice.title);
  in.read("confidence", choice.confidence);
  in.read("screenId", choice.screenId);
  in.read("params", choice.params);
}

void readJson(const JsonCursor& in, RouteResponse& response) {
  in.read("mode", response.mode);
  in.read("task", response.task);
  in.read("say", response.say);
  in.read("screenId", response.screenId);
  in.read("params", response.params);
  in.read("plan", response.plan);
  in.read("choices", response.choices);
}

}  // namespace zelvora
