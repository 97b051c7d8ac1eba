#include <ZelvoraSDK/backend/interpret.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include <ZelvoraSDK/backend/access_token.h>
#include <ZelvoraSDK/backend/private/exchange.h>
#include <ZelvoraSDK/backend/text_fallback.h>
#include <ZelvoraSDK/backend/wire.h>
#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/base/version.h>
#include <ZelvoraSDK/outcome/phrases.h>

namespace zelvora {
namespace {

std::string interpretBody(const InterpretQuery& query) {
  return jsonObject([&](JsonWriter& out) {
    out.member("locale", query.locale);
    out.member("text", query.text);
    out.member("spec", query.spec);
    out.key("context");
    out.object([](JsonWriter& context) {
      context.member("platform", kBackendPlatform);
      context.member("sdk_version", ZelvoraKit::version);
    });
  });
}

std::optional<RouteResponse> decodedRouteResponse(std::string_view body) {
  try {
    return decodeJson<RouteResponse>(body);
  } catch (const Error&) {
    return std::nullopt;
  }
}

/// The task with the id; when no task has it, the one with that screen.
const ZelvoraTaskSpec* findTask(const std::vector<ZelvoraTaskSpec>& tasks, std::string_view id) {
  auto found = std::ranges::find(tasks, id, &ZelvoraTaskSpec::taskId);
  if (found == tasks.end()) found = std::ranges::find(tasks, id, &ZelvoraTaskSpec::screenId);
  return found == tasks.end() ? nullptr : &*found;
}

ZelvoraUnsupported leadsNowhere(const RouteResponse& response) {
  return {response.say.value_or(kNothingMatchedSay)};
}

ZelvoraResult executedResult(const RouteResponse& response,
                             const std::vector<ZelvoraTaskSpec>& tasks) {
  const std::string taskId =
      response.task ? response.task->id : response.screenId.value_or("unknown");
  const std::optional<double> confidence =
      response.task ? std::optional(response.task->confidence) : std::nullopt;
  const Params params = response.params.value_or(Params{});
  const std::string say = response.say.value_or(kDoneSay);

  const ZelvoraTaskSpec* task = findTask(tasks, taskId);
  if (const auto presentation = task ? task->presentation() : std::nullopt)
    return ZelvoraPresent{*presentation, params, say, confidence, taskId};
  if (response.screenId && !isBlank(*response.screenId))
    return ZelvoraExecute{*response.screenId, params, say, confidence, taskId};
  return leadsNowhere(response);
}

ZelvoraResult offeredResult(const RouteResponse& response) {
  ZelvoraShowChoices offer{response.say.value_or(kPickOneSay), {}};
  for (const RouteResponse::Choice& choice : *response.choices)
    offer.choices.push_back(
        {choice.task_id, choice.title, choice.confidence, choice.screenId, choice.params});
  return offer;
}

}  // namespace

UrlRequest interpretRequest(const Url& baseURL, const InterpretQuery& query) {
  UrlRequest request = postJson(baseURL, "/api/interpret", interpretBody(query));
  request.headers.push_back({"Authorization", bearerAuthorization(query.accessToken)});
  return request;
}

RouteResponse readInterpretAnswer(const UrlResponse& answer) {
  const int status = routingStatus(answer);
  if (!isSuccess(status)) failRouting(status, "HTTP error: " + bodyText(answer));
  if (answer.body.empty())
    failRouting(status, "Empty response body from /api/interpret (status " +
                            std::to_string(status) + "). Backend must return JSON RouteResponse.");

  if (auto decoded = decodedRouteResponse(answer.body)) return *std::move(decoded);
  const std::string text = bodyText(answer);
  if (auto fallback = readTextAnswer(text)) return *std::move(fallback);
  failRouting(status, "Failed to decode /api/interpret JSON (status " + std::to_string(status) +
                          "). Body: " + text);
}

ZelvoraResult interpretedResult(const RouteResponse& response,
                                const std::vector<ZelvoraTaskSpec>& tasks) {
  if (response.mode == "execute") return executedResult(response, tasks);
  if (response.mode == "show_choices" && response.choices) return offeredResult(response);
  return leadsNowhere(response);
}

}  // namespace zelvora
