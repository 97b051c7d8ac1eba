#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/base/ordered_map.h>
#include <ZelvoraSDK/base/record.h>

namespace zelvora {

/// Parameters that travel with a navigation, in the order of the spec.
using Params = OrderedMap<std::string>;

/// What executing a task does.
struct ZelvoraTaskAction {
  std::string type;                           ///< Kind of action; "present" shows a presentation.
  std::optional<std::string> presentationId;  ///< The presentation (sheet, modal) to show.
  std::optional<std::string> screenId;        ///< The screen to open in place of the task's own.

  bool operator==(const ZelvoraTaskAction&) const = default;
};

/// One candidate offered to the user.
struct ZelvoraChoice {
  std::string taskId;
  std::string title;                    ///< Text shown to the user.
  double confidence = 0;                ///< In [0, 1].
  std::optional<std::string> screenId;  ///< Screen that selecting it opens.
  std::optional<Params> params;

  bool operator==(const ZelvoraChoice&) const = default;
};

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

/// The outcome of routing one command. By default unsupported, with nothing to say.
using ZelvoraResult =
    std::variant<ZelvoraUnsupported, ZelvoraExecute, ZelvoraPresent, ZelvoraShowChoices>;

/// One line for logs and consoles: `execute(screenId: "cart", params: [:], say: "Cart",
/// confidence: 0.77, taskId: nil)`. Quotes, backslashes and control characters are escaped.
ZELVORA_EXPORT std::string describe(const ZelvoraResult& result);

struct ZelvoraRouteTimings {
  double stt = 0;  ///< Seconds spent in speech-to-text for this request.
  bool operator==(const ZelvoraRouteTimings&) const = default;
};

/// The reply to an audio routing request.
struct ZelvoraRouteResponse {
  ZelvoraResult result;
  bool sttUsed = false;  ///< Whether speech-to-text produced the text that was routed.
  std::optional<ZelvoraRouteTimings> timings;  ///< Present when the request was measured.
  bool operator==(const ZelvoraRouteResponse&) const = default;
};

template <class Visitor, RecordOf<ZelvoraTaskAction> Record>
void fields(Visitor&& visit, Record& action) {
  visit("type", action.type);
  visit("presentationId", action.presentationId);
  visit("screenId", action.screenId);
}

template <class Visitor, RecordOf<ZelvoraChoice> Record>
void fields(Visitor&& visit, Record& choice) {
  visit("taskId", choice.taskId);
  visit("title", choice.title);
  visit("confidence", choice.confidence);
  visit("screenId", choice.screenId);
  visit("params", choice.params);
}

template <class Visitor, RecordOf<ZelvoraExecute> Record>
void fields(Visitor&& visit, Record& result) {
  visit("screenId", result.screenId);
  visit("params", result.params);
  visit("say", result.say);
  visit("confidence", result.confidence);
  visit("taskId", result.taskId);
}

template <class Visitor, RecordOf<ZelvoraPresent> Record>
void fields(Visitor&& visit, Record& result) {
  visit("presentationId", result.presentationId);
  visit("params", result.params);
  visit("say", result.say);
  visit("confidence", result.confidence);
  visit("taskId", result.taskId);
}

template <class Visitor, RecordOf<ZelvoraShowChoices> Record>
void fields(Visitor&& visit, Record& result) {
  visit("say", result.say);
  visit("choices", result.choices);
}

template <class Visitor, RecordOf<ZelvoraUnsupported> Record>
void fields(Visitor&& visit, Record& result) {
  visit("say", result.say);
}

/// The on-device transcript is used.
struct LocalSTTUsed {
  std::size_t transcriptLength = 0;  ///< In characters.
  bool operator==(const LocalSTTUsed&) const = default;
};

/// Audio is about to be sent to the cloud recogniser.
struct CloudSTTRequested {
  std::size_t audioBytes = 0;
  bool operator==(const CloudSTTRequested&) const = default;
};

/// The cloud transcript is used.
struct CloudSTTUsed {
  std::size_t transcriptLength = 0;  ///< In characters.
  bool operator==(const CloudSTTUsed&) const = default;
};

/// The cloud recogniser failed.
struct CloudSTTFailed {
  std::string message;  ///< Describes the failure.
  bool operator==(const CloudSTTFailed&) const = default;
};

/// An observable fact about speech recognition.
using ZelvoraAuditEvent =
    std::variant<LocalSTTUsed, CloudSTTRequested, CloudSTTUsed, CloudSTTFailed>;

// What the library says to the user when a task or the backend brings no words of its own.

inline constexpr char kNavigatingSay[] = "Navigating to: ";  ///< Before a task's title.
inline constexpr char kPickOneSay[] = "I'm not sure what you meant. Here are a few options:";
inline constexpr char kNothingMatchedSay[] = "No matching screen found. Try rephrasing 🙂";
inline constexpr char kNothingSaidSay[] = "Type or say something 🙂";
inline constexpr char kDoneSay[] = "OK";

}  // namespace zelvora

template <>
struct std::hash<zelvora::ZelvoraTaskAction> {
  std::size_t operator()(const zelvora::ZelvoraTaskAction& action) const noexcept {
    return zelvora::hashOf(action);
  }
};

template <>
struct std::hash<zelvora::ZelvoraChoice> {
  std::size_t operator()(const zelvora::ZelvoraChoice& choice) const noexcept {
    return zelvora::hashOf(choice);
  }
};
