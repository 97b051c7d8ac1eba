#pragma once

#include <string>

namespace zelvora::testing {

/// A spec of three tasks without any finding, for tests that put one fault into it.
inline std::string cleanSpec() {
  return R"({
  "app": { "id": "shop", "default_locale": "en-US" },
  "routing": {
    "thresholds": {
      "execute_min_score": 6.0, "execute_min_conf": 0.75,
      "choices_min_score": 3.0, "choices_min_conf": 0.45,
      "close_to_second_delta": 2.0, "max_choices": 4,
      "stopwordsByLocale": { "en-US": ["the", "please"] }
    },
    "weights": {
      "keyword_phrase_hit": 6, "keyword_single_hit": 3,
      "example_token_hit": 0.6, "example_token_cap": 3
    },
    "stopwords": ["the"],
    "context": {
      "enabled": true,
      "synonymsByLocale": { "en": { "trolley": ["shopping cart"] } },
      "relatedIntents": { "cart": ["orders"] },
      "memory": { "enabled": true }
    }
  },
  "learning": {
    "enabled": true, "mode": "on_device",
    "boost": { "recent_choice_bonus": 0.03, "repeat_choice_bonus": 0.03, "max_total_bonus": 0.15 },
    "telemetry": { "enabled": false, "endpoint": "", "send_text": false }
  },
  "tasks": [
    {
      "id": "cart", "title": "Shopping Cart", "screenId": "cart",
      "keywords": ["shopping cart", "basket contents"],
      "examples": ["open shopping cart", "show basket contents"]
    },
    {
      "id": "orders", "title": "Order History", "screenId": "orders",
      "keywords": ["order history", "earlier purchases"],
      "examples": ["see order history", "list earlier purchases"]
    },
    {
      "id": "help", "title": "Customer Service", "screenId": "help",
      "keywords": ["customer service", "talk human"],
      "examples": ["call customer service", "talk with human"]
    }
  ],
  "stt": { "replacementsByLocale": { "en-US": { "kart": "cart" } } }
})";
}

}  // namespace zelvora::testing
