#include <ZelvoraSDK/backend/semantic.h>

#include <algorithm>

#include <ZelvoraSDK/backend/exchange.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/outcome/result.h>

namespace zelvora {
namespace {

constexpr double kDefaultSemanticMinConf = 0.62;

std::string semanticBody(const SemanticQuery& query) {
  return jsonObject([&](JsonWriter& out) {
    out.member("text", query.text);
    out.member("locale", query.locale);
    out.member("tasks", query.tasks);
    out.member("app_id", query.appId);
    out.member("top_k", query.topK);
  });
}

}  // namespace

UrlRequest semanticRequest(const Url& baseURL, const SemanticQuery& query) {
  UrlRequest request = postJson(baseURL, "/api/semantic/resolve", semanticBody(query));
  request.headers.push_back({"Authorization", bearerAuthorization(query.accessToken)});
  return request;
}

SemanticResolver::SemanticResolveResponse readSemanticAnswer(const UrlResponse& answer) {
  const int status = routingStatus(answer);
  if (!isSuccess(status) || answer.body.empty())
    failRouting(status,
                "Semantic resolve HTTP " + std::to_string(status) + ": " + bodyText(answer));
  return decodeJson<SemanticResolver::SemanticResolveResponse>(answer.body);
}

std::optional<ZelvoraResult> semanticResult(
    const std::vector<SemanticResolver::SemanticMatch>& matches,
    const std::vector<ZelvoraTaskSpec>& tasks, const RuntimeSpec::Thresholds& thresholds) {
  if (matches.empty()) return std::nullopt;
  const SemanticResolver::SemanticMatch& match = matches.front();
  if (match.confidence < thresholds.semantic_min_conf.value_or(kDefaultSemanticMinConf))
    return std::nullopt;
  const auto task = std::ranges::find(tasks, match.taskId, &ZelvoraTaskSpec::taskId);
  if (task == tasks.end()) return std::nullopt;

  const std::string say = kNavigatingSay + task->title;
  if (const auto presentation = task->presentation())
    return ZelvoraPresent{*presentation, task->defaultParams, say, match.confidence, task->taskId};
  // The task's own screen, even when its action names another.
  if (isBlank(task->screenId)) return std::nullopt;
  return ZelvoraExecute{task->screenId, task->defaultParams, say, match.confidence, task->taskId};
}

}  // namespace zelvora
