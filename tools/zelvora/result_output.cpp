#include "result_output.h"

#include <algorithm>

#include <ZelvoraSDK/base/text.h>

namespace zelvora::tool {
namespace {

/// The members of each case, in the order of its values.
struct CaseWriter {
  JsonWriter& out;

  void operator()(const ZelvoraExecute& result) const {
    out.member("case", "execute");
    out.member("screenId", result.screenId);
    out.member("params", result.params);
    out.member("say", result.say);
    out.member("confidence", result.confidence);
    out.member("taskId", result.taskId);
  }
  void operator()(const ZelvoraPresent& result) const {
    out.member("case", "present");
    out.member("presentationId", result.presentationId);
    out.member("params", result.params);
    out.member("say", result.say);
    out.member("confidence", result.confidence);
    out.member("taskId", result.taskId);
  }
  void operator()(const ZelvoraShowChoices& result) const {
    out.member("case", "showChoices");
    out.member("say", result.say);
    out.member("choices", result.choices);
  }
  void operator()(const ZelvoraUnsupported& result) const {
    out.member("case", "unsupported");
    out.member("say", result.say);
  }
};

std::string confidenceText(const std::optional<double>& confidence) {
  return confidence ? "confidence " + shortestDecimal(*confidence) : "no confidence given";
}

std::string paramsText(const Params& params, const Style& style) {
  std::string text;
  for (const auto& [key, value] : params)
    text += (text.empty() ? "  with " : ", ") + style.text(key) + "=" + style.text(value);
  return text;
}

/// One line for the outcome, and what belongs below it.
struct FriendlyWriter {
  const Style& style;

  std::string operator()(const ZelvoraExecute& result) const {
    return style.good("open screen ") + style.strong(result.screenId) +
           paramsText(result.params, style) + "  " +
           style.faint(confidenceText(result.confidence)) + "\n  " + style.errorText(result.say) +
           "\n";
  }
  std::string operator()(const ZelvoraPresent& result) const {
    return style.good("present ") + style.strong(result.presentationId) +
           paramsText(result.params, style) + "  " +
           style.faint(confidenceText(result.confidence)) + "\n" +
           (result.say ? "  " + style.errorText(*result.say) + "\n" : "");
  }
  std::string operator()(const ZelvoraShowChoices& result) const {
    std::string text = style.notice("choose: ") + style.errorText(result.say) + "\n";
    std::size_t widest = 0;
    for (const ZelvoraChoice& choice : result.choices)
      widest = std::max(widest, characterCount(style.text(choice.title)));
    for (const ZelvoraChoice& choice : result.choices)
      text += "  " + padded(style.text(choice.title), widest) + "  " + fixed2(choice.confidence) +
              "  " + style.faint(choice.screenId.value_or(choice.taskId)) + "\n";
    return text;
  }
  std::string operator()(const ZelvoraUnsupported& result) const {
    return style.bad("unsupported: ") + style.errorText(result.say) + "\n";
  }
};

}  // namespace

void writeResult(JsonWriter& out, const ZelvoraResult& result) {
  out.beginObject();
  std::visit(CaseWriter{out}, result);
  out.endObject();
}

std::string routedLine(const std::optional<std::string>& text, const ZelvoraResult& result) {
  return jsonObject([&](JsonWriter& out) {
    out.member("text", text);
    out.key("result");
    writeResult(out, result);
  });
}

std::string friendlyResult(const ZelvoraResult& result, const Style& style) {
  return std::visit(FriendlyWriter{style}, result);
}

}  // namespace zelvora::tool
