#include <ZelvoraSDK/backend/conversion.h>

#include <algorithm>
#include <string>
#include <string_view>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/outcome/phrases.h>

namespace zelvora {
namespace {

constexpr double kDefaultSemanticMinConf = 0.62;

const ZelvoraTaskSpec* findTask(const std::vector<ZelvoraTaskSpec>& tasks,
                                std::string ZelvoraTaskSpec::*field, std::string_view value) {
  const auto found = std::ranges::find(tasks, value, field);
  return found == tasks.end() ? nullptr : &*found;
}

/// The presentation that executing `task` shows; absent when it opens a screen.
std::optional<std::string> presentationOf(const ZelvoraTaskSpec& task) {
  if (!task.action || task.action->type != "present") return std::nullopt;
  if (!task.action->presentationId) return std::nullopt;
  const std::string_view id = trimmed(*task.action->presentationId);
  if (id.empty()) return std::nullopt;
  return std::string(id);
}

std::optional<std::string> nonBlank(const std::optional<std::string>& text) {
  return text && !isBlank(*text) ? text : std::nullopt;
}

ZelvoraResult executedResult(const RouteResponse& response,
                             const std::vector<ZelvoraTaskSpec>& tasks) {
  const std::string taskId =
      response.task ? response.task->id : response.screenId.value_or("unknown");
  const std::optional<double> confidence =
      response.task ? std::optional(response.task->confidence) : std::nullopt;
  const Params params = response.params.value_or(Params{});
  const std::string say = response.say.value_or(kDoneSay);

  const ZelvoraTaskSpec* task = findTask(tasks, &ZelvoraTaskSpec::taskId, taskId);
  if (!task) task = findTask(tasks, &ZelvoraTaskSpec::screenId, taskId);
  if (const auto presentation = task ? presentationOf(*task) : std::nullopt)
    return ZelvoraPresent{*presentation, params, say, confidence, taskId};
  if (const auto screen = nonBlank(response.screenId))
    return ZelvoraExecute{*screen, params, say, confidence, taskId};
  return ZelvoraUnsupported{response.say.value_or(kNothingMatchedSay)};
}

ZelvoraResult offeredResult(const RouteResponse& response) {
  ZelvoraShowChoices offer{response.say.value_or(kPickOneSay), {}};
  for (const RouteResponse::Choice& choice : *response.choices)
    offer.choices.push_back(
        {choice.task_id, choice.title, choice.confidence, choice.screenId, choice.params});
  return offer;
}

}  // namespace

std::optional<ZelvoraResult> semanticResult(
    const std::vector<SemanticResolver::SemanticMatch>& matches,
    const std::vector<ZelvoraTaskSpec>& tasks, const RuntimeSpec::Thresholds& thresholds) {
  if (matches.empty()) return std::nullopt;
  const SemanticResolver::SemanticMatch& match = matches.front();
  if (match.confidence < thresholds.semantic_min_conf.value_or(kDefaultSemanticMinConf))
    return std::nullopt;
  const ZelvoraTaskSpec* task = findTask(tasks, &ZelvoraTaskSpec::taskId, match.taskId);
  if (!task) return std::nullopt;

  const std::string say = kNavigatingSay + task->title;
  if (const auto presentation = presentationOf(*task))
    return ZelvoraPresent{*presentation, task->defaultParams, say, match.confidence, task->taskId};
  if (isBlank(task->screenId)) return std::nullopt;
  return ZelvoraExecute{task->screenId, task->defaultParams, say, match.confidence, task->taskId};
}

std::optional<ZelvoraResult> catalogResult(const SemanticCatalogResult& answer) {
  const auto screen = nonBlank(answer.screenId);
  if (answer.intent != "navigate" || !screen) return std::nullopt;
  return ZelvoraExecute{*screen, answer.params.value_or(Params{}), answer.say.value_or(kDoneSay),
                        answer.score, std::nullopt};
}

ZelvoraResult interpretedResult(const RouteResponse& response,
                                const std::vector<ZelvoraTaskSpec>& tasks) {
  if (response.mode == "execute") return executedResult(response, tasks);
  if (response.mode == "show_choices" && response.choices) return offeredResult(response);
  return ZelvoraUnsupported{response.say.value_or(kNothingMatchedSay)};
}

}  // namespace zelvora
