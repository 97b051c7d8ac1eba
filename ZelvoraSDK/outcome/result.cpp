#include <ZelvoraSDK/outcome/result.h>

#include <ZelvoraSDK/base/text.h>

#include <string_view>

namespace zelvora {
namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

/// "\u{1B}"
void appendControlCharacter(std::string& line, unsigned char c) {
  line += "\\u{";
  if (c >= 0x10) line += kHexDigits[c >> 4];
  line += kHexDigits[c & 0xF];
  line += '}';
}

void append(std::string& line, std::string_view text) {
  line += '"';
  for (const char c : text) {
    if (c == '"' || c == '\\')
      (line += '\\') += c;
    else if (c == '\n')
      line += "\\n";
    else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
      appendControlCharacter(line, static_cast<unsigned char>(c));
    else
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

template <class T>
void append(std::string& line, const std::optional<T>& value) {
  if (value)
    append(line, *value);
  else
    line += "nil";
}

void append(std::string& line, const std::vector<ZelvoraChoice>& choices);

/// "name(label: value, label: value)"
template <HasFields Record>
void appendRecord(std::string& line, std::string_view name, const Record& record) {
  line += name;
  line += '(';
  const auto visit = [&line](std::string_view label, const auto& value) {
    if (line.back() != '(') line += ", ";
    line += label;
    line += ": ";
    append(line, value);
  };
  fields(visit, record);
  line += ')';
}

void append(std::string& line, const std::vector<ZelvoraChoice>& choices) {
  line += '[';
  for (const ZelvoraChoice& choice : choices) {
    if (&choice != &choices.front()) line += ", ";
    appendRecord(line, "ZelvoraChoice", choice);
  }
  line += ']';
}

struct CaseName {
  std::string_view operator()(const ZelvoraExecute&) const { return "execute"; }
  std::string_view operator()(const ZelvoraPresent&) const { return "present"; }
  std::string_view operator()(const ZelvoraShowChoices&) const { return "showChoices"; }
  std::string_view operator()(const ZelvoraUnsupported&) const { return "unsupported"; }
};

}  // namespace

std::string describe(const ZelvoraResult& result) {
  std::string line;
  std::visit([&line](const auto& outcome) { appendRecord(line, CaseName{}(outcome), outcome); },
             result);
  return line;
}

}  // namespace zelvora
