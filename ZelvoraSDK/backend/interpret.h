#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ZelvoraSDK/base/record.h>
#include <ZelvoraSDK/outcome/result.h>
#include <ZelvoraSDK/platform/network.h>
#include <ZelvoraSDK/spec/stored_spec.h>
#include <ZelvoraSDK/spec/task_spec.h>

// /api/interpret: what is asked, what the answer says, and what it means to the application.

namespace zelvora {

/// What /api/interpret is asked.
struct InterpretQuery {
  std::string text;  ///< The normalised utterance.
  std::string locale;
  const StoredSpec& spec;   ///< The application's whole spec, sent as it was given.
  std::string accessToken;  ///< With or without its "Bearer " prefix.
};

/// The backend's decision about an utterance. Fields carry the names of their JSON keys.
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

template <class Visitor, RecordOf<RouteResponse::Task> Record>
void fields(Visitor&& visit, Record& task) {
  visit("id", task.id);
  visit("confidence", task.confidence);
}

template <class Visitor, RecordOf<RouteResponse::PlanStep> Record>
void fields(Visitor&& visit, Record& step) {
  visit("type", step.type);
  visit("to", step.to);
  visit("via", step.via);
}

template <class Visitor, RecordOf<RouteResponse::Choice> Record>
void fields(Visitor&& visit, Record& choice) {
  visit("task_id", choice.task_id);
  visit("title", choice.title);
  visit("confidence", choice.confidence);
  visit("screenId", choice.screenId);
  visit("params", choice.params);
}

template <class Visitor, RecordOf<RouteResponse> Record>
void fields(Visitor&& visit, Record& response) {
  visit("mode", response.mode);
  visit("task", response.task);
  visit("say", response.say);
  visit("screenId", response.screenId);
  visit("params", response.params);
  visit("plan", response.plan);
  visit("choices", response.choices);
}

/// Throws Error when the spec cannot be written as JSON.
[[nodiscard]] UrlRequest interpretRequest(const Url& baseURL, const InterpretQuery& query);

/// A body that is not the JSON asked for is read as text. Throws Error in `kClientErrorDomain` over
/// a status outside 200–299, an empty body, and one that says nothing as text either.
[[nodiscard]] RouteResponse readInterpretAnswer(const UrlResponse& answer);

/// What the backend's interpretation means to the application; unsupported when it names no
/// destination.
[[nodiscard]] ZelvoraResult interpretedResult(const RouteResponse& response,
                                              const std::vector<ZelvoraTaskSpec>& tasks);

/// Reads an interpret answer that came as prose, such as `screenId: settings.main confidence: 87%`,
/// as an order to execute; absent when it names no id. `text` is UTF-8. Takes time in proportion
/// to its length, whatever it holds.
///
/// Words end where Unicode letters, numbers and the underscore end, and white space is that of
/// Unicode; key words are compared to the letter, and ids are ASCII.
[[nodiscard]] std::optional<RouteResponse> readTextAnswer(std::string_view text);

}  // namespace zelvora
