#include <gtest/gtest.h>

#include <ZelvoraSDK/backend/catalogue.h>
#include <ZelvoraSDK/backend/exchange.h>
#include <ZelvoraSDK/backend/interpret.h>
#include <ZelvoraSDK/backend/semantic.h>
#include <ZelvoraSDK/base/json_read.h>

#include "tools/zelvora/serve/backend.h"

namespace zelvora::serve {
namespace {

constexpr const char* kTasks =
    R"("tasks":[{"id":"cart","title":"Cart","screenId":"c","keywords":["basket"],
      "defaultParams":{"tab":"items"},"keywordsByLocale":{"he-IL":["עגלה"]}},
     {"taskId":"orders","screen_id":"o","synonyms":["purchases"]},
     {"id":"deals","title":"Deals","screenId":"d","examples":["cheap dress"]}])";

BackendOptions shop() {
  return {.catalogue = {{.id = "dress",
                         .title = "Dress",
                         .screenId = "detail",
                         .phrases = {"summer dress"},
                         .params = Params{{"p", "1"}},
                         .say = "Here"}}};
}

Reply ask(const std::string& path, const std::string& body,
          const BackendOptions& options = shop()) {
  return reply(options, {.path = path, .authorization = "Bearer t", .body = body});
}

UrlResponse answer(const Reply& reply) { return {.status = reply.status, .body = reply.body}; }

std::string withTasks(const std::string& members) { return "{" + members + "," + kTasks + "}"; }

RouteResponse interpret(const std::string& text, const BackendOptions& options = shop()) {
  return readInterpretAnswer(answer(
      ask("/api/interpret",
          R"({"locale":"en-US","text":")" + text + R"(","spec":{)" + kTasks + "}}", options)));
}

TEST(DevelopmentBackend, MatchesTheTasksOfTheRequestAndNoMoreThanAskedFor) {
  const struct {
    const char* members;
    std::vector<std::string> ids;
  } rows[] = {
      {R"("text":"baskets","locale":"en-US","top_k":3)", {"cart"}},
      {R"("text":"basket","locale":"he-IL")", {}},  // the locale's own keywords replace them
      {R"("text":"עגלה","locale":"he-IL")", {"cart"}},
      {R"("text":"purchase")", {"orders"}},
      {R"("text":"basket purchase","top_k":1)", {"cart"}},
      {R"("text":"basket purchase","top_k":0)", {}},
      {R"("text":"summer")", {}},  // the catalogue is another endpoint's
  };
  for (const auto& row : rows) {
    std::vector<std::string> ids;
    const Reply reply = ask("/api/semantic/resolve", withTasks(row.members));
    for (const auto& match : readSemanticAnswer(answer(reply)).matches) ids.push_back(match.taskId);
    EXPECT_EQ(ids, row.ids) << row.members << reply.body;
  }
}

TEST(DevelopmentBackend, NavigatesToAClearItemOfTheCatalogueOnly) {
  const auto resolve = [](const char* query) {
    return readCatalogAnswer(answer(ask("/api/semanticCatalog/resolve", query)));
  };
  const SemanticCatalogResult found = resolve(R"({"query":"summer dresses"})");
  EXPECT_EQ(found, (SemanticCatalogResult{.intent = "navigate",
                                          .screenId = "detail",
                                          .params = Params{{"p", "1"}},
                                          .score = 1,
                                          .say = "Here"}));
  const SemanticCatalogResult doubtful = resolve(R"({"query":"dress code on mars"})");
  EXPECT_EQ(doubtful.intent, "none");
  ASSERT_EQ(doubtful.choices->size(), 1u);
  EXPECT_EQ(doubtful.choices->front().id, "dress");
}

TEST(DevelopmentBackend, InterpretsOverTasksAndCatalogueTogether) {
  const RouteResponse task = interpret("basket");
  EXPECT_EQ(task.mode, "execute");
  EXPECT_EQ(task.task->id, "cart");
  EXPECT_EQ(task.screenId, "c");
  EXPECT_EQ(task.params, (Params{{"tab", "items"}}));

  const RouteResponse item = interpret("summer dress");
  EXPECT_EQ(item.task->id, "dress");
  EXPECT_EQ(item.say, "Here");

  const RouteResponse close = interpret("cheap summer");
  EXPECT_EQ(close.mode, "show_choices");
  ASSERT_EQ(close.choices->size(), 2u);
  EXPECT_EQ(interpret("weather on mars").mode, "unsupported");
}

TEST(DevelopmentBackend, SearchesItsOwnSpecForRequestsThatBringNoTasks) {
  BackendOptions options = shop();
  options.spec = "{" + std::string(kTasks) + "}";
  const Reply reply = ask("/api/interpret", R"({"text":"basket"})", options);
  EXPECT_EQ(readInterpretAnswer(answer(reply)).task->id, "cart");
}

TEST(DevelopmentBackend, RefusesWhatItCannotAnswerAndSaysWhy) {
  BackendOptions strict = shop();
  strict.requiredToken = "right";
  const struct {
    const char* path;
    const char* authorization;
    const char* body;
    int status;
  } rows[] = {
      {"/api/interpret", "", R"({"text":"a"})", 401},
      {"/api/interpret", "Bearer  ", R"({"text":"a"})", 401},
      {"/api/interpret", "Bearer wrong", R"({"text":"a"})", 401},
      {"/api/interpret", "Basic right", R"({"text":"a"})", 401},
      {"/api/interpret", "Bearer right", R"({"text":"a"})", 200},
      {"/api/semanticCatalog/resolve", "", R"({"query":"a"})", 200},
      {"/api/semanticCatalog/resolve", "", R"({"text":"a"})", 400},
      {"/api/semantic/resolve", "Bearer right", "not JSON", 400},
      {"/api/semantic/resolve", "Bearer right", R"({"text":"a","tasks":[{"title":"b"}]})", 400},
      {"/api/semantic/resolve", "Bearer right", R"({"text":"a","tasks":7})", 400},
      {"/api/stt", "Bearer right", "", 501},
      {"/api/other", "Bearer right", "{}", 404},
  };
  for (const auto& row : rows) {
    const Reply refused =
        reply(strict, {.path = row.path, .authorization = row.authorization, .body = row.body});
    EXPECT_EQ(refused.status, row.status) << row.path << " " << row.body;
    EXPECT_FALSE(refused.body.empty());
    EXPECT_EQ(refused.body.find("right"), refused.body.npos);
  }
}

TEST(DevelopmentBackend, TranscribesOnceItHasARecogniser) {
  BackendOptions options = shop();
  options.transcriber = [](const std::string& audio, const std::string& locale) {
    return std::optional(audio + " in " + locale);
  };
  Request request{
      .path = "/api/stt", .authorization = "Bearer t", .audio = "bytes", .locale = "he-IL"};
  EXPECT_EQ(reply(options, request).body, R"({"text":"bytes in he-IL"})");
  request.audio.clear();
  EXPECT_EQ(reply(options, request).status, 400);
}

}  // namespace
}  // namespace zelvora::serve
