#pragma once

#include <string>

#include <ZelvoraSDK/outcome/result.h>

namespace zelvora::testing {

/// A full spec with two tasks and `routing` members of the test's choice, each followed by a comma.
inline std::string smallSpec(const std::string& thresholds = "", const std::string& routing = "",
                             const std::string& stt = "") {
  return R"({"app":{"id":"shop","default_locale":"en-US"},
    "routing":{"thresholds":{)" +
         thresholds + R"(
        "execute_min_score":6.0,"execute_min_conf":0.75,"choices_min_score":3.0,
        "choices_min_conf":0.45,"close_to_second_delta":2.0,"max_choices":4},)" +
         routing + R"(
      "weights":{"keyword_phrase_hit":6,"keyword_single_hit":3,"example_token_hit":0.6,
        "example_token_cap":3},
      "stopwords":["please"]},
    "learning":{"enabled":true,"mode":"local",
      "boost":{"recent_choice_bonus":0,"repeat_choice_bonus":0,"max_total_bonus":0},
      "telemetry":{"enabled":false,"endpoint":"","send_text":false}},)" +
         stt + R"(
    "tasks":[
      {"id":"cart","title":"Cart","screenId":"cart_screen","keywords":["my cart","open cart"],
       "examples":["open my cart"],"defaultParams":{"tab":"items"}},
      {"id":"orders","title":"Orders","screenId":"orders_screen","keywords":["orders"],
       "examples":["show my orders"]},
      {"id":"promo","title":"Promotion","screenId":"promo_screen","keywords":["spring promotion"],
       "examples":["show the spring promotion"],"action":{"type":"present","id":" promo_sheet "}}]})";
}

/// What "open my cart" leads to.
inline const ZelvoraResult kCart =
    ZelvoraExecute{"cart_screen", {{"tab", "items"}}, "Navigating to: Cart", 0.95, "cart"};

}  // namespace zelvora::testing
