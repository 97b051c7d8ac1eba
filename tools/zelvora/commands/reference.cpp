#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/base/text.h>

#include "../commands.h"

namespace zelvora::tool {
namespace {

std::string term(const Option& option) {
  return option.name + (option.value.empty() ? "" : " " + option.value);
}

/// `text` for roff, with text in back quotes in bold.
std::string roff(std::string_view text) {
  std::string result;
  bool isBold = false;
  for (const char c : text) {
    if (c == '`') {
      result += isBold ? "\\fR" : "\\fB";
      isBold = !isBold;
    } else if (c == '\\') {
      result += "\\e";
    } else if (c == '-') {
      result += "\\-";
    } else if (c == '\'') {
      result += "\\(aq";
    } else {
      result += c;
    }
  }
  return result.starts_with('.') ? "\\&" + result : result;
}

std::string roffParagraphs(std::string_view about) {
  return replacedAll(roff(about), "\n\n", "\n.PP\n") + "\n";
}

std::string roffOption(const Option& option) {
  std::string name = "\\fB" + roff(option.name) + "\\fR";
  if (!option.value.empty()) name += " \\fI" + roff(option.value) + "\\fR";
  const std::string otherwise = option.otherwise.empty() ? "" : " [" + roff(option.otherwise) + "]";
  return ".TP\n" + name + "\n" + roff(option.meaning) + otherwise + "\n";
}

std::vector<Option> commonOptions(const std::vector<Command>& commands) {
  std::vector<Option> common;
  for (const Option& option : commands.front().options)
    if (option.isCommon) common.push_back(option);
  return common;
}

bool hasCommonOptions(const Command& command) {
  return std::ranges::any_of(command.options, &Option::isCommon);
}

std::string manPage(const std::vector<Command>& commands) {
  std::string page = std::string(".TH ZELVORA 1 \"\" \"zelvora ") + ZelvoraKit::version +
                     "\"\n.SH NAME\nzelvora \\- voice navigation for applications, from the "
                     "terminal\n.SH SYNOPSIS\n";
  for (const Command& command : commands)
    if (!command.isHidden) page += "\\fB" + roff(usageLine(command)) + "\\fR\n.br\n";
  page += ".SH DESCRIPTION\n" + roffParagraphs(kToolAbout) + ".SH COMMANDS\n";
  for (const Command& command : commands) {
    if (command.isHidden) continue;
    page += ".SS " + roff(usageLine(command)) + "\n" + roffParagraphs(command.about);
    for (const Option& option : command.options)
      if (!option.isCommon) page += roffOption(option);
    if (hasCommonOptions(command)) page += ".PP\nTakes the common options.\n";
  }
  page += ".SH COMMON OPTIONS\n";
  for (const Option& option : commonOptions(commands)) page += roffOption(option);
  page += ".SH EXIT STATUS\n" + roffParagraphs(kToolExitStatus);
  return page + ".SH ENVIRONMENT\n" + roffParagraphs(kToolEnvironment);
}

std::string markdownTable(const std::vector<Option>& options) {
  std::string table = "| option | meaning | default |\n| --- | --- | --- |\n";
  for (const Option& option : options)
    table += "| `" + term(option) + "` | " + option.meaning + " | " +
             (!option.otherwise.empty() ? option.otherwise
              : option.value.empty()    ? "off"
                                        : "none") +
             " |\n";
  return table;
}

/// The text that docs/tool.md holds word for word: each command's section begins like this.
std::string markdown(const std::vector<Command>& commands) {
  std::string text = std::string(kToolAbout) + "\n\n" + kToolExitStatus + "\n\n" +
                     kToolEnvironment + "\n\n" + markdownTable(commonOptions(commands)) + "\n";
  for (const Command& command : commands) {
    if (command.isHidden) continue;
    text += "## zelvora " + command.name +
            (command.operands.shown.empty() ? "" : " " + command.operands.shown) + "\n\n" +
            command.about + "\n\n";
    std::vector<Option> own;
    for (const Option& option : command.options)
      if (!option.isCommon) own.push_back(option);
    if (!own.empty()) text += markdownTable(own) + "\n";
  }
  return text;
}

}  // namespace

Command referenceCommand(const std::vector<Command>& commands) {
  const auto form = std::make_shared<std::string>();
  Command command{
      .name = "reference",
      .summary = "print the man page, or what docs/tool.md has of it",
      .operands = {.shown = "man|markdown",
                   .missing = "man or markdown?",
                   .least = 1,
                   .most = 1,
                   .take = [form](std::vector<std::string> forms) { *form = forms.front(); },
                   .choices = {"man", "markdown"}},
      .isHidden = true};
  command.run = [form, commands](Output& out) {
    out.write(*form == "man" ? manPage(commands) : markdown(commands));
    return kAnswered;
  };
  return command;
}

}  // namespace zelvora::tool
