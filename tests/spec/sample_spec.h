#pragma once

#include <ZelvoraSDK/base/text.h>

#include <string>
#include <string_view>

namespace zelvora {

/// A full spec with every required key and no optional one.
inline constexpr std::string_view kSmallestFullSpec = R"({
  "app": {"id": "shop", "default_locale": "en-US"},
  "routing": {
    "thresholds": {"execute_min_score": 6, "execute_min_conf": 0.75, "choices_min_score": 3.5,
                   "choices_min_conf": 0.45, "close_to_second_delta": 2, "max_choices": 4.0},
    "weights": {"keyword_phrase_hit": 3, "keyword_single_hit": 2,
                "example_token_hit": 0.6, "example_token_cap": 3},
    "stopwords": ["please"]
  },
  "learning": {
    "enabled": true, "mode": "local",
    "boost": {"recent_choice_bonus": 0.1, "repeat_choice_bonus": 0.2, "max_total_bonus": 0.3},
    "telemetry": {"enabled": false, "endpoint": "", "send_text": false}
  },
  "tasks": []
})";

/// The smallest full spec with one piece of its text replaced.
inline std::string fullSpecWith(std::string_view what, std::string_view with) {
  return replacedAll(kSmallestFullSpec, what, with);
}

}  // namespace zelvora
