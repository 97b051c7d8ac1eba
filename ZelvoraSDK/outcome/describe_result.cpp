#include <ZelvoraSDK/outcome/result.h>

#include <ZelvoraSDK/base/text.h>

#include <cstdio>
#include <string_view>

namespace zelvora {
namespace {

void append(std::string& line, std::string_view text) {
  line += '"';
  for (const char c : text) {
    if (c == '"' || c == '\\')
      (line += '\\') += c;
    else if (c == '\n')
      line += "\\n";
    else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u{%X}", static_cast<unsigned>(c));
      line += escape;
    } else
      line += c;
  }
  line += '"';
}

void append(std::string& line, double number) { line += shortestDecimal(number); }

void append(std::string& line, const Params& params) {
  line += '[';
  if (params.empty()) line += ':';
  for (const auto& [key, value] : params) {
    if (line.back() != '[') line += ", ";
    append(line, key);
    line += ": ";
    append(line, value);
  }
  line += ']';
}

/// "name(label: value, label: value)"
class CaseText {
 public:
  explicit CaseText(std::string_view name) : line_(name) { line_ += '('; }

  template <class T>
  CaseText& with(std::string_view label, const T& value) {
    if (line_.back() != '(') line_ += ", ";
    line_ += label;
    line_ += ": ";
    append(line_, value);
    return *this;
  }

  template <class T>
  CaseText& with(std::string_view label, const std::optional<T>& value) {
    return value ? with(label, *value) : withPlain(label, "nil");
  }

  CaseText& withPlain(std::string_view label, std::string_view text) {
    if (line_.back() != '(') line_ += ", ";
    line_ += label;
    line_ += ": ";
    line_ += text;
    return *this;
  }

  [[nodiscard]] std::string text() const { return line_ + ')'; }

 private:
  std::string line_;
};

std::string describeChoice(const ZelvoraChoice& choice) {
  return CaseText("ZelvoraChoice")
      .with("taskId", choice.taskId)
      .with("title", choice.title)
      .with("confidence", choice.confidence)
      .with("screenId", choice.screenId)
      .with("params", choice.params)
      .text();
}

std::string describeCase(const ZelvoraExecute& result) {
  return CaseText("execute")
      .with("screenId", result.screenId)
      .with("params", result.params)
      .with("say", result.say)
      .with("confidence", result.confidence)
      .with("taskId", result.taskId)
      .text();
}

std::string describeCase(const ZelvoraPresent& result) {
  return CaseText("present")
      .with("presentationId", result.presentationId)
      .with("params", result.params)
      .with("say", result.say)
      .with("confidence", result.confidence)
      .with("taskId", result.taskId)
      .text();
}

std::string describeCase(const ZelvoraShowChoices& result) {
  std::string choices = "[";
  for (const ZelvoraChoice& choice : result.choices) {
    if (choices.size() > 1) choices += ", ";
    choices += describeChoice(choice);
  }
  return CaseText("showChoices").with("say", result.say).withPlain("choices", choices + "]").text();
}

std::string describeCase(const ZelvoraUnsupported& result) {
  return CaseText("unsupported").with("say", result.say).text();
}

}  // namespace

std::string describe(const ZelvoraResult& result) {
  return std::visit([](const auto& outcome) { return describeCase(outcome); }, result);
}

}  // namespace zelvora
