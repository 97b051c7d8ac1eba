#include <ZelvoraSDK/backend/catalogue.h>
#include <ZelvoraSDK/backend/exchange.h>
#include <ZelvoraSDK/backend/interpret.h>
#include <ZelvoraSDK/backend/semantic.h>

#include <gtest/gtest.h>

#include <string>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_fwd.h>

namespace zelvora {
namespace {

enum class Endpoint { interpret, semantic, catalogue };

void read(Endpoint endpoint, const UrlResponse& answer) {
  switch (endpoint) {
    case Endpoint::interpret: static_cast<void>(readInterpretAnswer(answer)); break;
    case Endpoint::semantic: static_cast<void>(readSemanticAnswer(answer)); break;
    case Endpoint::catalogue: static_cast<void>(readCatalogAnswer(answer)); break;
  }
}

TEST(Answers, FailWithTheStatusAndTheWordsOfTheirEndpoint) {
  using enum Endpoint;
  const struct {
    Endpoint endpoint;
    UrlResponse answer;
    int code;
    std::string description;
  } rows[] = {
      {interpret, {}, 0, "No HTTP response"},
      {semantic, {}, 0, "No HTTP response"},
      {catalogue, {}, 0, "No HTTP response"},
      {interpret, {500, "oops"}, 500, "HTTP error: oops"},
      {interpret, {302, ""}, 302, "HTTP error: "},
      {interpret, {199, "\xff"}, 199, "HTTP error: "},
      {semantic, {300, "no"}, 300, "Semantic resolve HTTP 300: no"},
      {semantic, {200, ""}, 200, "Semantic resolve HTTP 200: "},
      {catalogue, {404, "gone"}, 404, "Semantic Catalog resolve HTTP 404: gone"},
      {catalogue, {204, ""}, 204, "Empty response body from /api/semanticCatalog/resolve"},
      {interpret,
       {200, ""},
       200,
       "Empty response body from /api/interpret (status 200). Backend must return JSON "
       "RouteResponse."},
      {interpret,
       {201, "hello"},
       201,
       "Failed to decode /api/interpret JSON (status 201). Body: hello"},
      {interpret,
       {200, " \n"},
       200,
       "Failed to decode /api/interpret JSON (status 200). Body:  \n"},
      {interpret,
       {200, "id=a \xff"},
       200,
       "Failed to decode /api/interpret JSON (status 200). Body: "},
  };
  for (const auto& row : rows) {
    try {
      read(row.endpoint, row.answer);
      ADD_FAILURE() << "read: " << row.description;
    } catch (const Error& failure) {
      EXPECT_EQ(failure.domain(), "ZelvoraClient") << row.description;
      EXPECT_EQ(failure.code(), row.code) << row.description;
      EXPECT_EQ(failure.description(), row.description);
    }
  }
}

TEST(Answers, OfTheWrongShapeFailWithTheReadersError) {
  const std::string rows[] = {"[]",
                              "{}",
                              "hello",
                              "\"\xff\"",
                              std::string(100'000, '['),
                              R"({"matches":[{}],"intent":1})",
                              R"({"matches":[{"taskId":"a"}]})",
                              R"({"matches":{},"intent":"navigate","params":{"a":1}})",
                              R"({"matches":[],"intent":"navigate"} x)"};
  for (const std::string& body : rows) {
    for (const Endpoint endpoint : {Endpoint::semantic, Endpoint::catalogue}) {
      try {
        read(endpoint, {200, body});
        ADD_FAILURE() << "read: " << body.substr(0, 40);
      } catch (const Error& failure) {
        EXPECT_EQ(failure.domain(), kJsonErrorDomain) << body.substr(0, 40);
      }
    }
  }
}

TEST(InterpretAnswer, IsReadWithAllItsFields) {
  const UrlResponse answer{200, R"({"mode":"execute","task":{"id":"a","confidence":1},"say":"Go",
      "screenId":"s","params":{"z":"1","a":"2"},"plan":[{"type":"push","to":"x"}],"extra":[1],
      "choices":[{"task_id":"b","title":"B","confidence":0.25,"params":null}]})"};
  const RouteResponse expected{.mode = "execute",
                               .task = RouteResponse::Task{"a", 1},
                               .say = "Go",
                               .screenId = "s",
                               .params = Params{{"z", "1"}, {"a", "2"}},
                               .plan = {{RouteResponse::PlanStep{"push", "x", {}}}},
                               .choices = {{RouteResponse::Choice{"b", "B", 0.25, {}, {}}}}};
  EXPECT_EQ(readInterpretAnswer(answer), expected);
}

TEST(InterpretAnswer, IsReadAsTextWhenItIsNotTheExpectedJson) {
  const char* rows[] = {"screenId: home", "{\"mode\":1, id=home}", "\xEF\xBB\xBF id: home",
                        R"({"say":"id=home"})"};
  for (const char* body : rows)
    EXPECT_EQ(readInterpretAnswer({200, body}).screenId, "home") << body;
}

TEST(CatalogueAnswer, NeedsAnIntentAlone) {
  EXPECT_EQ(readCatalogAnswer({200, R"({"intent":"none"})"}),
            (SemanticCatalogResult{.intent = "none"}));
  EXPECT_EQ(readCatalogAnswer({200, R"({"intent":"navigate","screenId":"s","params":{"a":"b"},
      "score":1,"choices":[{"id":"c","entityType":"t"}],"say":"Go"})"}),
            (SemanticCatalogResult{.intent = "navigate",
                                   .screenId = "s",
                                   .params = Params{{"a", "b"}},
                                   .score = 1,
                                   .choices = {{SemanticCatalogChoice{"c", {}, "t"}}},
                                   .say = "Go"}));
}

}  // namespace
}  // namespace zelvora
