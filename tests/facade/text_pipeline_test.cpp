#include <gtest/gtest.h>

#include <algorithm>
#include <future>

#include <ZelvoraSDK/async/coroutine.h>
#include <ZelvoraSDK/spec/json_value.h>
#include <ZelvoraSDK/zelvora.h>

#include "small_spec.h"
#include "test_application.h"

namespace zelvora {
namespace {

using testing::kCart;
using testing::smallSpec;
using testing::TestApplication;

constexpr const char* kSaySomething = "Type or say something 🙂";
std::vector<std::string> endpointsAsked(const TestApplication& application) {
  std::vector<std::string> paths;
  for (const auto& request : application.network->requests())
    paths.push_back(request.url.substr(std::string("https://backend.test").size()));
  return paths;
}

TEST(TextPipeline, AnswersEmptyTextWithoutAnyStage) {
  TestApplication application;
  const auto zelvora = application.facade(smallSpec());
  const ZelvoraResult nothing = ZelvoraUnsupported{kSaySomething};
  for (const char* text : {"", "  \n\t ", "please", "Please PLEASE!"})
    EXPECT_EQ(application.routeAndWait(*zelvora, text), nothing) << text;
  EXPECT_TRUE(application.network->requests().empty());
}

TEST(TextPipeline, SettlesOnTheDeviceAndSaysSo) {
  TestApplication application;
  const auto zelvora = application.facade(smallSpec());
  EXPECT_EQ(application.routeAndWait(*zelvora, " Open my cart, please! "), kCart);
  EXPECT_TRUE(application.network->requests().empty());
  const std::vector<std::string> expected = {
      "[Zelvora][Normalize] 'Open my cart, please!' -> 'open my cart,'",
      "✅ LOCAL HIT screenId=cart_screen conf=0.95",
      "🧩 PIPELINE REACHED result=" + describe(kCart)};
  EXPECT_EQ(application.log->lines(), expected);
}

TEST(TextPipeline, ReplacesMishearingsBeforeItNormalises) {
  TestApplication application;
  const auto zelvora = application.facade(smallSpec(
      "", "", R"("stt":{"replacementsByLocale":{"en-US":{"Kart":"cart"},"en":{"my":"your"}}},)"));
  EXPECT_EQ(application.routeAndWait(*zelvora, "open my kart"), kCart);
}

TEST(TextPipeline, PrefersTheLocalesOwnStopwords) {
  TestApplication application;
  const auto zelvora =
      application.facade(smallSpec(R"("stopwordsByLocale":{"en-US":["kindly"],"he":[]},)"));
  application.routeAndWait(*zelvora, "please kindly open my cart");
  EXPECT_EQ(application.log->lines().front(),
            "[Zelvora][Normalize] 'please kindly open my cart' -> 'please open my cart'");
}

TEST(TextPipeline, RaisesChoicesThatWerePickedBefore) {
  TestApplication application;
  application.defaults->set("zelvora.learn.shop-key.cart_screen", 9);
  const auto zelvora = application.facade(smallSpec());
  const ZelvoraResult result = application.routeAndWait(*zelvora, "open orders");
  const auto* offer = std::get_if<ZelvoraShowChoices>(&result);
  ASSERT_NE(offer, nullptr);
  EXPECT_EQ(offer->say, "I'm not sure what you meant. Here are a few options:");
  ASSERT_EQ(offer->choices.size(), 2u);
  EXPECT_DOUBLE_EQ(offer->choices[0].confidence, 0.55);
  EXPECT_DOUBLE_EQ(offer->choices[1].confidence, 0.12 + 0.15);
}

/// User defaults that report when something is counted.
class AwaitedDefaults final : public UserDefaults {
 public:
  std::promise<std::string> counted;

  std::int64_t integer(const std::string&) override { return 0; }
  std::int64_t increment(const std::string& key) override {
    counted.set_value(key);
    return 1;
  }
  void removeAll(const std::string&) override {}
};

TEST(TextPipeline, CountsAPick) {
  const TestApplication application;
  const auto defaults = std::make_shared<AwaitedDefaults>();
  Platform platform = application.platform();
  platform.defaults = defaults;
  Zelvora zelvora(platform, application.settings, AnyEncodable(JSONValue()));
  zelvora.recordUserChoice("orders_screen");
  EXPECT_EQ(defaults->counted.get_future().get(), "zelvora.learn.shop-key.orders_screen");
}

TEST(TextPipeline, FollowsUpOnTheLastScreen) {
  // "there my cart_screen" holds the keyword "my cart"; "there my" alone holds none.
  const std::string context = R"("context":{"enabled":true,"memory":{}},)";
  const auto settlesOnDevice = [&](Seconds later) {
    TestApplication application;
    const auto zelvora = application.facade(smallSpec("", context));
    application.routeAndWait(*zelvora, "open my cart");
    application.clock->pass(later);
    application.network->answer(500, "");
    application.routeAndWait(*zelvora, "there my");
    return application.network->requests().empty();
  };
  EXPECT_TRUE(settlesOnDevice(Seconds{60}));
  EXPECT_FALSE(settlesOnDevice(Seconds{60.5}));
}

TEST(TextPipeline, AsksTheBackendStageByStage) {
  const struct {
    const char* name;
    std::string thresholds;
    std::vector<std::pair<int, const char*>> answers;
    std::vector<std::string> asked;
    ZelvoraResult expected;
  } rows[] = {
      {"a semantic match of a known task",
       "",
       {{200, R"({"matches":[{"task_id":"orders","confidence":0.62}]})"}},
       {"/api/semantic/resolve"},
       ZelvoraExecute{"orders_screen", {}, "Navigating to: Orders", 0.62, "orders"}},
      {"a semantic match of a presentation",
       "",
       {{200, R"({"matches":[{"taskId":"promo","confidence":0.9}]})"}},
       {"/api/semantic/resolve"},
       ZelvoraPresent{"promo_sheet", {}, "Navigating to: Promotion", 0.9, "promo"}},
      {"a match too weak, then the catalogue",
       "",
       {{200, R"({"matches":[{"taskId":"orders","confidence":0.61}]})"},
        {200, R"({"intent":"navigate","screenId":"list","params":{"q":"tv"},"score":0.8})"}},
       {"/api/semantic/resolve", "/api/semanticCatalog/resolve"},
       ZelvoraExecute{"list", {{"q", "tv"}}, "OK", 0.8, std::nullopt}},
      {"semantic off, nothing in the catalogue, then interpretation",
       R"("semantic_enabled":false,)",
       {{200, R"({"intent":"none"})"},
        {200, R"({"mode":"execute","screenId":"help","task":{"id":"help","confidence":0.7}})"}},
       {"/api/semanticCatalog/resolve", "/api/interpret"},
       ZelvoraExecute{"help", {}, "OK", 0.7, "help"}},
      {"a stage that fails ends it",
       "",
       {{500, "oops"}},
       {"/api/semantic/resolve"},
       ZelvoraUnsupported{"Semantic resolve HTTP 500: oops"}},
      {"interpretation fails last",
       R"("semantic_enabled":false,)",
       {{200, R"({"intent":"none"})"}, {200, ""}},
       {"/api/semanticCatalog/resolve", "/api/interpret"},
       ZelvoraUnsupported{"Empty response body from /api/interpret (status 200). Backend must "
                          "return JSON RouteResponse."}},
  };
  for (const auto& row : rows) {
    TestApplication application;
    const auto zelvora = application.facade(smallSpec(row.thresholds));
    for (const auto& [status, body] : row.answers) application.network->answer(status, body);
    EXPECT_EQ(application.routeAndWait(*zelvora, "what about jazz"), row.expected) << row.name;
    EXPECT_EQ(endpointsAsked(application), row.asked) << row.name;
  }
}

TEST(TextPipeline, SkipsDeviceAndSemanticStageForAnInvalidSpec) {
  TestApplication application;
  const auto zelvora = application.facade(R"({"anything":1})");
  application.network->answer(200, R"({"intent":"navigate","screenId":"list"})");
  EXPECT_EQ(application.routeAndWait(*zelvora, "open my cart"),
            (ZelvoraResult{ZelvoraExecute{"list", {}, "OK", std::nullopt, std::nullopt}}));
  EXPECT_EQ(endpointsAsked(application), std::vector<std::string>{"/api/semanticCatalog/resolve"});
}

TEST(TextPipeline, RemembersSemanticAnswersForTheirTimeToLive) {
  TestApplication application;
  const auto zelvora = application.facade(smallSpec(R"("semantic_cache_ttl_seconds":30,)"));
  application.network->answer(200, R"({"matches":[{"taskId":"orders","confidence":0.9}]})");
  application.routeAndWait(*zelvora, "what did I buy");
  application.clock->pass(Seconds{30});
  application.routeAndWait(*zelvora, "What did I buy?");
  EXPECT_EQ(endpointsAsked(application).size(), 1u);

  application.clock->pass(Seconds{1});
  application.network->answer(200, R"({"matches":[{"taskId":"orders","confidence":0.9}]})");
  application.routeAndWait(*zelvora, "what did I buy");
  EXPECT_EQ(endpointsAsked(application).size(), 2u);
}

asio::awaitable<std::string> failingToken() {
  throw Error("Host", 3, "signed out");
  co_return "";
}

asio::awaitable<std::string> givenToken() { co_return "Bearer secret "; }

TEST(TextPipeline, TakesTheTokenFromTheApplication) {
  TestApplication application;
  const auto zelvora = application.facade(smallSpec(), {.accessToken = givenToken});
  application.network->answer(500, "no");
  application.routeAndWait(*zelvora, "play some jazz");
  const auto request = application.network->requests().at(0);
  EXPECT_NE(std::ranges::find(request.headers, UrlHeader{"Authorization", "Bearer secret"}),
            request.headers.end());
  for (const std::string& line : application.log->lines())
    EXPECT_EQ(line.find("secret"), line.npos) << line;

  const auto signedOut = application.facade(smallSpec(), {.accessToken = failingToken});
  EXPECT_EQ(application.routeAndWait(*signedOut, "play some jazz"),
            ZelvoraResult{ZelvoraUnsupported{"signed out"}});
}

}  // namespace
}  // namespace zelvora
