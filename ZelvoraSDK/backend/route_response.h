#pragma once

#include <optional>
#include <string>
#include <vector>

#include <ZelvoraSDK/base/json_fwd.h>
#include <ZelvoraSDK/outcome/task_action.h>

namespace zelvora {

/// The backend's decision about an utterance, as /api/interpret answers it. Fields carry the names
/// of their JSON keys.
struct RouteResponse {
  struct Task {
    std::string id;
    double confidence = 0;

    bool operator==(const Task&) const = default;
  };

  /// Carried by the format and without effect.
  struct PlanStep {
    std::string type;
    std::optional<std::string> to;
    std::optional<std::string> via;

    bool operator==(const PlanStep&) const = default;
  };

  struct Choice {
    std::string task_id;
    std::string title;
    double confidence = 0;
    std::optional<std::string> screenId;
    std::optional<Params> params;

    bool operator==(const Choice&) const = default;
  };

  std::string mode;  ///< "execute", "show_choices"; any other names nothing.
  std::optional<Task> task;
  std::optional<std::string> say;
  std::optional<std::string> screenId;
  std::optional<Params> params;
  std::optional<std::vector<PlanStep>> plan;
  std::optional<std::vector<Choice>> choices;

  bool operator==(const RouteResponse&) const = default;
};

void readJson(const JsonCursor& in, RouteResponse::Task& task);
void readJson(const JsonCursor& in, RouteResponse::PlanStep& step);
void readJson(const JsonCursor& in, RouteResponse::Choice& choice);
void readJson(const JsonCursor& in, RouteResponse& response);

}  // namespace zelvora
