#include <ZelvoraSDK/backend/catalogue.h>
#include <ZelvoraSDK/backend/exchange.h>
#include <ZelvoraSDK/backend/interpret.h>
#include <ZelvoraSDK/backend/semantic.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zelvora {
namespace {

constexpr char kNothingFound[] = "No matching screen found. Try rephrasing 🙂";
constexpr char kPickOne[] = "I'm not sure what you meant. Here are a few options:";

ZelvoraTaskSpec task(std::string id, std::string screenId,
                     std::optional<ZelvoraTaskAction> action = {}) {
  ZelvoraTaskSpec record;
  record.taskId = std::move(id);
  record.title = "The " + record.taskId;
  record.screenId = std::move(screenId);
  record.keywords = {"k"};
  record.defaultParams = {{"from", "spec"}};
  record.action = std::move(action);
  return record;
}

ZelvoraTaskAction action(std::string type, std::optional<std::string> presentationId) {
  return {std::move(type), std::move(presentationId), "action.screen"};
}

const std::vector<ZelvoraTaskSpec>& tasks() {
  static const std::vector<ZelvoraTaskSpec> all = {
      task("cart", "cart.main", action("open", std::nullopt)),
      task("promo", "promo.main", action("present", " sheet.promo\n")),
      task("blank", "blank.main", action("present", "  ")),
      task("cased", "cased.main", action("Present", "sheet")),
      task("nowhere", " "),
  };
  return all;
}

TEST(SemanticResult, LooksAtTheFirstMatchAlone) {
  const Params params{{"from", "spec"}};
  const ZelvoraResult cart =
      ZelvoraExecute{"cart.main", params, "Navigating to: The cart", 0.62, "cart"};
  const ZelvoraResult promo =
      ZelvoraPresent{"sheet.promo", params, "Navigating to: The promo", 0.9, "promo"};
  const ZelvoraResult blank =
      ZelvoraExecute{"blank.main", params, "Navigating to: The blank", 0.9, "blank"};
  const ZelvoraResult cased =
      ZelvoraExecute{"cased.main", params, "Navigating to: The cased", 0.9, "cased"};
  const struct {
    const char* name;
    std::vector<SemanticResolver::SemanticMatch> matches;
    std::optional<ZelvoraResult> expected;
    std::optional<double> minConf = {};
  } rows[] = {
      {"no match", {}, {}},
      {"just sure enough; the task's own screen", {{"cart", 0.62}}, cart},
      {"not sure enough", {{"cart", 0.61}}, {}},
      {"a higher bar", {{"cart", 0.62}}, {}, 0.7},
      {"a lower bar", {{"cart", 0.62}}, cart, 0.1},
      {"the second is not looked at", {{"cart", 0.5}, {"cart", 0.9}}, {}},
      {"unknown task", {{"gone", 0.9}}, {}},
      {"a screen id names no task", {{"cart.main", 0.9}}, {}},
      {"a presentation, trimmed", {{"promo", 0.9}}, promo},
      {"a blank presentation", {{"blank", 0.9}}, blank},
      {"an action of another type", {{"cased", 0.9}}, cased},
      {"a task without a screen", {{"nowhere", 0.9}}, {}},
  };
  for (const auto& row : rows) {
    RuntimeSpec::Thresholds thresholds;
    thresholds.semantic_min_conf = row.minConf;
    EXPECT_EQ(semanticResult(row.matches, tasks(), thresholds), row.expected) << row.name;
  }
}

TEST(CatalogResult, NavigatesToAScreenOrNowhere) {
  const ZelvoraResult all = ZelvoraExecute{"orders", {{"id", "7"}}, "Here", 0.8, std::nullopt};
  const ZelvoraResult bare = ZelvoraExecute{"orders", {}, "OK", std::nullopt, std::nullopt};
  const struct {
    const char* name;
    SemanticCatalogResult answer;
    std::optional<ZelvoraResult> expected;
  } rows[] = {
      {"all given", {"navigate", "orders", Params{{"id", "7"}}, 0.8, {}, "Here"}, all},
      {"the screen alone", {"navigate", "orders", {}, {}, {}, {}}, bare},
      {"no screen", {"navigate", {}, {}, 0.8, {}, {}}, {}},
      {"a blank screen", {"navigate", " \n", {}, 0.8, {}, {}}, {}},
      {"another intent", {"Navigate", "orders", {}, 0.8, {}, {}}, {}},
  };
  for (const auto& row : rows) EXPECT_EQ(catalogResult(row.answer), row.expected) << row.name;
}

TEST(InterpretedResult, FollowsTheModeAndTheSpec) {
  using Task = RouteResponse::Task;
  using Choices = std::vector<RouteResponse::Choice>;
  const Params params{{"id", "7"}};
  const Choices cart = {{"cart", "Cart", 0.5, "cart.main", params}};
  const struct {
    const char* name;
    RouteResponse response;
    ZelvoraResult expected;
  } rows[] = {
      {"all given",
       {"execute", Task{"x", 0.9}, "Go", "screen", params, {}, {}},
       ZelvoraExecute{"screen", params, "Go", 0.9, "x"}},
      {"no task: the screen names it",
       {"execute", {}, {}, "screen", {}, {}, {}},
       ZelvoraExecute{"screen", {}, "OK", std::nullopt, "screen"}},
      {"a presentation by task id",
       {"execute", Task{"promo", 0.9}, {}, "screen", params, {}, {}},
       ZelvoraPresent{"sheet.promo", params, "OK", 0.9, "promo"}},
      {"a presentation by the screen that stands for the task",
       {"execute", {}, {}, "promo.main", {}, {}, {}},
       ZelvoraPresent{"sheet.promo", {}, "OK", std::nullopt, "promo.main"}},
      {"a presentation needs no screen",
       {"execute", Task{"promo", 0.9}, "Go", {}, {}, {}, {}},
       ZelvoraPresent{"sheet.promo", {}, "Go", 0.9, "promo"}},
      {"the answer's screen, not the task's",
       {"execute", Task{"cart", 0.9}, {}, "screen", {}, {}, {}},
       ZelvoraExecute{"screen", {}, "OK", 0.9, "cart"}},
      {"no screen", {"execute", Task{"cart", 0.9}, "Hm", {}, {}, {}, {}}, ZelvoraUnsupported{"Hm"}},
      {"a blank screen",
       {"execute", Task{"cart", 0.9}, {}, " ", {}, {}, {}},
       ZelvoraUnsupported{kNothingFound}},
      {"nothing at all", {"execute", {}, {}, {}, {}, {}, {}}, ZelvoraUnsupported{kNothingFound}},
      {"choices",
       {"show_choices", {}, "Which?", {}, {}, {}, cart},
       ZelvoraShowChoices{"Which?", {{"cart", "Cart", 0.5, "cart.main", params}}}},
      {"choices without words, even none",
       {"show_choices", {}, {}, {}, {}, {}, Choices{}},
       ZelvoraShowChoices{kPickOne, {}}},
      {"choices left out",
       {"show_choices", {}, {}, "screen", {}, {}, {}},
       ZelvoraUnsupported{kNothingFound}},
      {"another mode",
       {"answer", Task{"cart", 0.9}, "42", "screen", {}, {}, cart},
       ZelvoraUnsupported{"42"}},
  };
  for (const auto& row : rows)
    EXPECT_EQ(interpretedResult(row.response, tasks()), row.expected) << row.name;
}

TEST(InterpretedResult, LooksForANamelessTaskAsUnknown) {
  const std::vector<ZelvoraTaskSpec> withUnknown = {
      task("unknown", "s", action("present", "sheet"))};
  const RouteResponse nameless{"execute", {}, {}, {}, {}, {}, {}};
  EXPECT_EQ(interpretedResult(nameless, withUnknown),
            ZelvoraResult(ZelvoraPresent{"sheet", {}, "OK", std::nullopt, "unknown"}));
}

}  // namespace
}  // namespace zelvora
