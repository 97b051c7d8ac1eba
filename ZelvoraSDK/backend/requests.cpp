#include <ZelvoraSDK/backend/requests.h>

#include <string_view>
#include <utility>

#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/platform/network.h>

namespace zelvora {
namespace {

constexpr Seconds kTimeout{60};

UrlRequest jsonRequest(const Url& baseURL, std::string_view path, std::string body) {
  UrlRequest request;
  request.method = "POST";
  request.url = toString(appendingPath(baseURL, path));
  request.headers = {{"Content-Type", "application/json"}};
  request.body = std::move(body);
  request.timeout = kTimeout;
  return request;
}

UrlRequest authorized(UrlRequest request, std::string_view accessToken) {
  request.headers.push_back({"Authorization", bearerAuthorization(accessToken)});
  return request;
}

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

std::string semanticBody(const SemanticQuery& query) {
  return jsonObject([&](JsonWriter& out) {
    out.member("text", query.text);
    out.member("locale", query.locale);
    out.member("tasks", query.tasks);
    out.member("app_id", query.appId);
    out.member("top_k", query.topK);
  });
}

std::string catalogBody(const CatalogQuery& query) {
  return jsonObject([&](JsonWriter& out) {
    out.member("query", query.query);
    out.member("publishable_key", query.publishableKey);
    out.member("platform", query.platform);
    out.member("bundle_id", query.bundleId);
    out.member("sdk_version", query.sdkVersion);
  });
}

}  // namespace

UrlRequest interpretRequest(const Url& baseURL, const InterpretQuery& query) {
  return authorized(jsonRequest(baseURL, "/api/interpret", interpretBody(query)),
                    query.accessToken);
}

UrlRequest semanticRequest(const Url& baseURL, const SemanticQuery& query) {
  return authorized(jsonRequest(baseURL, "/api/semantic/resolve", semanticBody(query)),
                    query.accessToken);
}

UrlRequest catalogRequest(const Url& baseURL, const CatalogQuery& query) {
  return jsonRequest(baseURL, "/api/semanticCatalog/resolve", catalogBody(query));
}

}  // namespace zelvora
