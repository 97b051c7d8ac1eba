#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <ZelvoraSDK/outcome/task_action.h>

namespace zelvora {

/// One candidate offered to the user.
struct ZelvoraChoice {
  std::string taskId;
  std::string title;                    ///< Text shown to the user.
  double confidence = 0;                ///< In [0, 1].
  std::optional<std::string> screenId;  ///< Screen that selecting it opens.
  std::optional<Params> params;

  bool operator==(const ZelvoraChoice&) const = default;
};

void readJson(const JsonCursor& in, ZelvoraChoice& choice);
void writeJson(JsonWriter& out, const ZelvoraChoice& choice);

/// Open a screen now.
struct ZelvoraExecute {
  std::string screenId;
  Params params;
  std::string say;                   ///< Text to show or speak; may be empty.
  std::optional<double> confidence;  ///< In [0, 1]; absent when the producer has none to give.
  std::optional<std::string> taskId;

  bool operator==(const ZelvoraExecute&) const = default;
};

/// Show a presentation now.
struct ZelvoraPresent {
  std::string presentationId;
  Params params;
  std::optional<std::string> say;
  std::optional<double> confidence;  ///< In [0, 1]; absent when the producer has none to give.
  std::optional<std::string> taskId;

  bool operator==(const ZelvoraPresent&) const = default;
};

/// Ambiguous: let the user pick.
struct ZelvoraShowChoices {
  std::string say;
  std::vector<ZelvoraChoice> choices;

  bool operator==(const ZelvoraShowChoices&) const = default;
};

/// Nothing matched.
struct ZelvoraUnsupported {
  std::string say;

  bool operator==(const ZelvoraUnsupported&) const = default;
};

/// The outcome of routing one command.
using ZelvoraResult =
    std::variant<ZelvoraExecute, ZelvoraPresent, ZelvoraShowChoices, ZelvoraUnsupported>;

/// One line for logs and consoles: `execute(screenId: "cart", params: [:], say: "Cart",
/// confidence: 0.77, taskId: nil)`. Quotes, backslashes and control characters are escaped.
std::string describe(const ZelvoraResult& result);

}  // namespace zelvora

template <>
struct std::hash<zelvora::ZelvoraChoice> {
  std::size_t operator()(const zelvora::ZelvoraChoice& choice) const noexcept;
};
