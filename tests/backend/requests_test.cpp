#include <ZelvoraSDK/backend/catalogue.h>
#include <ZelvoraSDK/backend/exchange.h>
#include <ZelvoraSDK/backend/interpret.h>
#include <ZelvoraSDK/backend/semantic.h>

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/ordered_map.h>

namespace zelvora {
namespace {

const UrlHeader kJson{"Content-Type", "application/json"};
const UrlHeader kBearer{"Authorization", "Bearer abc"};

void expectRequest(const UrlRequest& request, const std::string& url,
                   const std::vector<UrlHeader>& headers, const std::string& body) {
  EXPECT_EQ(request.method, "POST");
  EXPECT_EQ(request.url, url);
  EXPECT_EQ(request.headers, headers);
  EXPECT_EQ(request.body, body);
  EXPECT_EQ(request.timeout, Seconds{60});
}

TEST(Requests, AreBuiltByteForByte) {
  const Url base = parseUrl("https://api.example.org/v1/");
  const StoredSpec spec = AnyEncodable(OrderedMap<int>{{"z", 1}, {"a", 2}});
  expectRequest(
      interpretRequest(
          base, {.text = "open \"it\"", .locale = "en-US", .spec = spec, .accessToken = "abc"}),
      "https://api.example.org/v1/api/interpret", {kJson, kBearer},
      R"({"locale":"en-US","text":"open \"it\"","spec":{"z":1,"a":2},)"
      R"("context":{"platform":"ios","sdk_version":"0.1.0"}})");

  expectRequest(
      semanticRequest(base, {.text = "open",
                             .locale = "de-DE",
                             .appId = "key",
                             .tasks = {{"cart", "Cart", "cart.main", {"basket"}, {}}},
                             .topK = 5,
                             .accessToken = "Bearer abc"}),
      "https://api.example.org/v1/api/semantic/resolve", {kJson, kBearer},
      R"({"text":"open","locale":"de-DE","tasks":[{"id":"cart","title":"Cart",)"
      R"("screenId":"cart.main","keywords":["basket"],"examples":[]}],"app_id":"key","top_k":5})");

  expectRequest(
      catalogRequest(base, {.query = "für", .publishableKey = "key", .bundleId = "org.example"}),
      "https://api.example.org/v1/api/semanticCatalog/resolve", {kJson},
      R"({"query":"für","publishable_key":"key","platform":"ios","bundle_id":"org.example",)"
      R"("sdk_version":"0.1.0"})");
}

TEST(Requests, FailForASpecThatJsonCannotHold) {
  const StoredSpec spec = AnyEncodable(std::numeric_limits<double>::quiet_NaN());
  const InterpretQuery query{.text = "t", .locale = "l", .spec = spec, .accessToken = "a"};
  EXPECT_THROW(static_cast<void>(interpretRequest(parseUrl("https://a.example"), query)), Error);
}

}  // namespace
}  // namespace zelvora
