#include <algorithm>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/workbench/lint.h>

#include "../application.h"
#include "../commands.h"
#include "../evaluation/progress.h"

namespace zelvora::tool {
namespace {

struct LintOptions {
  std::vector<std::string> files;
  bool json = false;
  bool strict = false;
  bool quiet = false;
};

using Findings = std::vector<LintFinding>;

std::ptrdiff_t countOf(const Findings& findings, LintSeverity severity) {
  return std::ranges::count(findings, severity, &LintFinding::severity);
}

std::string jsonOf(const std::string& file, const Findings& findings) {
  return jsonObject([&](JsonWriter& out) {
    out.member("file", file);
    out.member("errors", countOf(findings, LintSeverity::error));
    out.member("warnings", countOf(findings, LintSeverity::warning));
    out.member("notes", countOf(findings, LintSeverity::note));
    out.key("findings");
    out.beginArray();
    for (const LintFinding& each : findings)
      out.object([&](JsonWriter& finding) {
        finding.member("code", each.code);
        finding.member("severity", toString(each.severity));
        finding.member("path", each.path);
        finding.member("line", each.place.line);
        finding.member("column", each.place.column);
        finding.member("message", each.message);
        finding.member("hint", each.hint);
      });
    out.endArray();
  });
}

/// What the readable form shows as one: the same code and cause in the same task.
std::string groupOf(const LintFinding& finding) {
  const std::string task =
      finding.path.starts_with("tasks[") ? finding.path.substr(0, finding.path.find(']')) : "";
  return finding.code + '\n' + std::string(toString(finding.severity)) + '\n' + task + '\n' +
         finding.cause;
}

std::string coloured(const Style& style, LintSeverity severity) {
  const std::string_view word = toString(severity);
  if (severity == LintSeverity::error) return style.bad(word);
  return severity == LintSeverity::warning ? style.notice(word) : style.faint(word);
}

std::string placeOf(const LintFinding& finding) {
  return std::to_string(finding.place.line) + ":" + std::to_string(finding.place.column);
}

void printGroup(const std::string& file, const std::vector<const LintFinding*>& group,
                const Style& style, Output& out) {
  const LintFinding& first = *group.front();
  out.write(style.strong(style.text(file) + ":" + placeOf(first)) + ": " +
            coloured(style, first.severity) + ": " + style.text(first.message) + " [" + first.code +
            "]\n");
  out.write("    " + style.text(first.hint) + "\n");
  for (std::size_t i = 1; i < group.size(); ++i) {
    const bool isSame = group[i]->hint == first.hint;
    out.write(style.faint("    also " + placeOf(*group[i]) + ": " +
                          style.text(isSame ? group[i]->message : group[i]->hint)) +
              "\n");
  }
}

void printReadable(const std::string& file, const Findings& findings, const Style& style,
                   Output& out) {
  std::vector<std::pair<std::string, std::vector<const LintFinding*>>> groups;
  for (const LintFinding& finding : findings) {
    std::string group = groupOf(finding);
    auto at = std::ranges::find(groups, group, &decltype(groups)::value_type::first);
    if (at == groups.end()) at = groups.insert(groups.end(), {std::move(group), {}});
    at->second.push_back(&finding);
  }
  for (const auto& [name, group] : groups) printGroup(file, group, style, out);
  out.flush();
}

std::string counted(std::ptrdiff_t count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string readSpec(const std::string& file) {
  if (file != "-") return readInputFile(file);
  std::string bytes(std::istreambuf_iterator<char>(std::cin), {});
  if (std::cin.bad()) throw UsageError("standard input can't be read");
  return bytes;
}

Findings lintWithProgress(const std::string& bytes) {
  ProgressBar bar("linting");
  return lintSpec(bytes, [&](std::size_t done, std::size_t all) {
    bar.show(static_cast<double>(done) / static_cast<double>(all));
  });
}

int lintFile(const std::string& file, const LintOptions& options, Output& out) {
  const Findings findings = lintWithProgress(readSpec(file));
  const auto errors = countOf(findings, LintSeverity::error);
  const auto warnings = countOf(findings, LintSeverity::warning);
  if (options.json) {
    out.jsonLine(jsonOf(file, findings));
  } else {
    printReadable(file, findings, Style::forOutput(), out);
    if (!options.quiet)
      printError(file + ": " + counted(errors, "error") + ", " + counted(warnings, "warning") +
                 ", " + counted(countOf(findings, LintSeverity::note), "note"));
  }
  return errors > 0 || (options.strict && warnings > 0) ? kAnswerIsNo : kAnswered;
}

int runLint(const LintOptions& options, Output& out) {
  int status = kAnswered;
  for (const std::string& file : options.files) {
    try {
      status = std::max(status, lintFile(file, options, out));
    } catch (const Error& error) {
      complain(file + ": " + error.description());
      status = kUnusable;
    } catch (const UsageError& error) {
      complain(error.what());
      status = kUnusable;
    }
  }
  return status;
}

}  // namespace

Command lintCommand() {
  const auto options = std::make_shared<LintOptions>();
  Command command{
      .name = "lint",
      .summary = "check that specs do what their authors mean",
      .about =
          "Prints `FILE:LINE:COLUMN: severity: message [code]` for each finding, and a hint "
          "below it: what `validate` says, and what follows from how utterances are scored. "
          "Every title, keyword and example of a task is routed on the device, with an empty "
          "session; findings of one code and cause in one task are shown together. `-` reads "
          "standard input. `docs/writing-a-spec.md` explains each code.\n\nThe exit status is "
          "1 if there is an error, or a warning with `--strict`, and 2 if a file can't be "
          "read or is not JSON; the others are still checked.",
      .operands = {
          .shown = "FILE…",
          .missing = "no spec to lint",
          .least = 1,
          .take = [options](std::vector<std::string> files) { options->files = std::move(files); },
          .completes = Completes::files}};
  command.options = {
      {.name = "--json", .meaning = "one JSON object a file", .take = into(options->json)},
      {.name = "--strict",
       .meaning = "a warning makes the exit status 1 too",
       .take = into(options->strict)},
      quietOption(options->quiet)};
  command.run = [options](Output& out) { return runLint(*options, out); };
  return command;
}

}  // namespace zelvora::tool
