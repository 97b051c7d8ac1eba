#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#ifdef ZELVORA_SHELL
#include <histedit.h>
#include <langinfo.h>

#include <clocale>
#include <cstdio>
#include <cstring>
#endif

#include <charconv>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/spec/runtime_spec.h>

#include "../application.h"
#include "../commands.h"
#include "../explanation.h"
#include "../result_output.h"

namespace zelvora::tool {
namespace {

namespace fs = std::filesystem;

struct ShellCommand {
  const char* name;
  const char* argument;
  const char* meaning;
};
constexpr ShellCommand kShellCommands[] = {
    {":explain", "[TEXT]", "show what the device makes of TEXT, or of the last utterance"},
    {":choose", "N", "pick the N-th of the choices offered last"},
    {":reload", "", "read the spec again; one that changed on disk is read anyway"},
    {":locale", "L", "go on under another locale"},
    {":help", "", "this list"},
    {":quit", "", "leave, as Ctrl-D does"},
};

std::vector<std::string> shellCommandNames() {
  std::vector<std::string> names;
  for (const ShellCommand& each : kShellCommands) names.emplace_back(each.name);
  return names;
}

/// Where lines come from.
class Lines {
 public:
  virtual ~Lines() = default;
  /// Absent at the end.
  virtual std::optional<std::string> next() = 0;
  /// The shell's exit status.
  [[nodiscard]] virtual int status() const { return kAnswered; }
};

/// Standard input as it is, for scripts and for builds without line editing.
class PlainLines final : public Lines {
 public:
  std::optional<std::string> next() override { return input_.next(); }
  [[nodiscard]] int status() const override { return input_.status(); }

 private:
  InputLines input_;
};

#ifdef ZELVORA_SHELL
/// A line editor on the terminal itself, so that standard output carries answers only.
class EditedLines final : public Lines {
 public:
  explicit EditedLines(fs::path historyFile) : historyFile_(std::move(historyFile)) {
    // So that characters are edited, not bytes. Only the character type: numbers keep their form.
    std::setlocale(LC_CTYPE, "");
    if (std::strcmp(::nl_langinfo(CODESET), "UTF-8") != 0) std::setlocale(LC_CTYPE, "C.UTF-8");
    terminal_.reset(std::fopen("/dev/tty", "we"));
    FILE* const shown = terminal_ ? terminal_.get() : stderr;
    editor_.reset(::el_init("zelvora", stdin, shown, shown));
    history_.reset(::history_init());
    if (!editor_ || !history_) throw UsageError("this terminal can't be edited on");
    HistEvent event;
    ::history(history_.get(), &event, H_SETSIZE, 1000);
    ::history(history_.get(), &event, H_SETUNIQUE, 1);
    ::history(history_.get(), &event, H_LOAD, historyFile_.c_str());
    ::el_set(editor_.get(), EL_SIGNAL, 1);  // gives the terminal back before a signal ends us
    ::el_set(editor_.get(), EL_EDITOR, "emacs");
    ::el_set(editor_.get(), EL_HIST, &::history, history_.get());
    ::el_set(
        editor_.get(), EL_PROMPT, +[](EditLine*) { return const_cast<char*>("zelvora> "); });
    ::el_set(editor_.get(), EL_ADDFN, "complete", "Complete a command", &EditedLines::complete);
    ::el_set(editor_.get(), EL_BIND, "^I", "complete", nullptr);
    ::el_set(editor_.get(), EL_BIND, "^R", "em-inc-search-prev", nullptr);
    // Between two lines the terminal is in its ordinary mode, and a Ctrl-D typed then arrives as
    // NUL.
    ::el_set(editor_.get(), EL_BIND, "^@", "em-delete-or-list", nullptr);
  }

  std::optional<std::string> next() override {
    int length = 0;
    const char* const line = ::el_gets(editor_.get(), &length);
    if (!line || length <= 0) return std::nullopt;
    std::string text(line, static_cast<std::size_t>(length));
    if (text.ends_with('\n')) text.pop_back();
    if (!isBlank(text)) remember(text);
    return text;
  }

 private:
  /// Saves the history after each line, because an interrupt ends the process.
  void remember(const std::string& line) {
    HistEvent event;
    ::history(history_.get(), &event, H_ENTER, line.c_str());
    if (historyFile_.empty()) return;
    std::error_code ignored;
    fs::create_directories(historyFile_.parent_path(), ignored);
    const int file = ::open(historyFile_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0) return;
    ::close(file);
    ::history(history_.get(), &event, H_SAVE, historyFile_.c_str());
  }

  static unsigned char complete(EditLine* editor, int /*key*/) {
    const LineInfo* const line = ::el_line(editor);
    const std::string typed(line->buffer, line->cursor);
    std::vector<std::string> fitting;
    for (const std::string& name : shellCommandNames())
      if (name.starts_with(typed)) fitting.push_back(name);
    if (!typed.starts_with(':') || fitting.size() != 1) return CC_REFRESH_BEEP;
    const std::string rest = fitting.front().substr(typed.size()) + " ";
    return ::el_insertstr(editor, rest.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
  }

  struct CloseFile {
    void operator()(FILE* file) const { std::fclose(file); }
  };
  struct EndEditor {
    void operator()(EditLine* editor) const { ::el_end(editor); }
  };
  struct EndHistory {
    void operator()(History* history) const { ::history_end(history); }
  };

  fs::path historyFile_;
  std::unique_ptr<FILE, CloseFile> terminal_;
  std::unique_ptr<History, EndHistory> history_;
  std::unique_ptr<EditLine, EndEditor> editor_;
};
#endif

std::unique_ptr<Lines> linesFor(const CommonOptions& options) {
#ifdef ZELVORA_SHELL
  if (isInteractive())
    return std::make_unique<EditedLines>(dataFolderOf(options) / "shell-history");
#else
  (void)options;
#endif
  return std::make_unique<PlainLines>();
}

/// How a file looked when it was read.
struct FileState {
  fs::file_time_type time{};
  std::uintmax_t size = 0;

  bool operator==(const FileState&) const = default;
};

FileState stateOf(const fs::path& file) {
  std::error_code gone;
  return {.time = fs::last_write_time(file, gone), .size = fs::file_size(file, gone)};
}

/// What would stop the process if the spec were used, or nothing.
std::optional<std::string> problemIn(const fs::path& file) {
  const std::string bytes = readInputFile(file);
  std::optional<RuntimeSpec> spec;
  try {
    spec = decodeJson<RuntimeSpec>(bytes);
  } catch (const Error&) {
    return std::nullopt;  // a minimal spec, or none, stops nothing
  }
  for (const std::string& problem : UncheckedSpec(*std::move(spec)).validateSpec())
    if (problem.starts_with("Task ")) return file.string() + ": " + problem;
  return std::nullopt;
}

class Shell {
 public:
  Shell(const CommonOptions& options, Output& out) : options_(options), out_(out) {
    open(options_);
  }

  int run() {
    const std::unique_ptr<Lines> lines = linesFor(options_);
    if (isInteractive()) printError("An utterance a line; :help for more.");
    while (const auto line = lines->next()) {
      if (!line->starts_with(':'))
        answer(*line);
      else if (!obey(*line))
        break;
      out_.flush();
    }
    return lines->status();
  }

 private:
  /// What the session keeps when the application is built anew.
  struct Opened {
    std::string text;
    Timestamp at;
  };

  /// Throws UsageError and leaves everything as it was when the options' spec can't be used.
  void open(const CommonOptions& options) {
    auto application = std::make_unique<Application>(options);
    const FileState state = stateOf(application->specFile());
    if (!application->specFile().empty())
      if (const auto problem = problemIn(application->specFile())) throw UsageError(*problem);
    if (lastOpened_) application->remember(lastOpened_->text, lastOpened_->at);
    options_ = options;
    application_ = std::move(application);
    state_ = state;
  }

  void reload() {
    state_ = stateOf(application_->specFile());
    try {
      open(options_);
      printError(application_->specFile().string() + ": read again, " +
                 std::to_string(idsIn(application_->spec()).tasks.size()) + " tasks");
    } catch (const UsageError& error) {
      complain(std::string(error.what()) + "; going on with the spec from before");
    }
  }

  void reloadIfChanged() {
    if (!application_->specFile().empty() && stateOf(application_->specFile()) != state_) reload();
  }

  void answer(const std::string& text) {
    reloadIfChanged();
    last_ = text;
    const HeldDiagnostics held(application_->diagnostics(), options_.verbose);
    const Timestamp now = application_->platform().clock->now();
    const ZelvoraResult result = application_->route(text);
    if (const auto* offered = std::get_if<ZelvoraShowChoices>(&result)) choices_ = offered->choices;
    if (std::holds_alternative<ZelvoraExecute>(result) ||
        std::holds_alternative<ZelvoraPresent>(result))
      lastOpened_ = Opened{.text = text, .at = now};
    if (options_.json) return out_.jsonLine(routedLine(text, result));
    out_.write("  " + friendlyResult(result, Style::forOutput()));
    out_.flush();
  }

  /// False when the shell is to end.
  bool obey(const std::string& line) {
    const std::size_t space = std::min(line.find(' '), line.size());
    const std::string name = line.substr(0, space);
    const std::string argument(trimmed(std::string_view(line).substr(space)));
    if (name == ":quit") return false;
    if (name == ":help")
      help();
    else if (name == ":explain")
      explainText(argument.empty() ? last_ : argument);
    else if (name == ":choose")
      choose(argument);
    else if (name == ":reload")
      reload();
    else if (name == ":locale")
      changeLocale(argument);
    else
      complain("unknown command " + name + "; the nearest is " +
               nearestTo(name, shellCommandNames()));
    return true;
  }

  void help() {
    for (const ShellCommand& each : kShellCommands)
      out_.write("  " + padded(std::string(each.name) + " " + each.argument, 18) + each.meaning +
                 "\n");
    out_.write("  anything else     is an utterance, and is routed\n");
  }

  void explainText(const std::string& text) {
    reloadIfChanged();
    const PreparedSpec spec(application_->spec());
    const Explanation explanation =
        explain(text, spec, application_->settings().locale, application_->platform().clock->now());
    if (options_.json) return out_.jsonLine(explanationLine(explanation));
    out_.write(friendlyExplanation(explanation, spec, Style::forOutput()));
  }

  void choose(const std::string& argument) {
    std::size_t number = 0;
    const char* const end = argument.data() + argument.size();
    const auto read = std::from_chars(argument.data(), end, number);
    if (read.ec != std::errc() || read.ptr != end || number < 1 || number > choices_.size())
      return complain(choices_.empty()
                          ? "no choices were offered yet"
                          : ":choose takes a number from 1 to " + std::to_string(choices_.size()));
    const ZelvoraChoice& choice = choices_[number - 1];
    if (!choice.screenId) return complain(choice.title + " has no screen");
    const auto count = application_->recordPick(*choice.screenId);
    if (!count) return complain("the pick of " + *choice.screenId + " could not be recorded");
    out_.write("  " + Style::forOutput().strong(*choice.screenId) +
               ", picked so far: " + std::to_string(*count) + "\n");
  }

  void changeLocale(const std::string& locale) {
    if (locale.empty()) return printError("the locale is " + application_->settings().locale);
    CommonOptions options = options_;
    options.locale = locale;
    try {
      open(options);
    } catch (const UsageError& error) {
      complain(error.what());
    }
  }

  CommonOptions options_;
  Output& out_;
  std::unique_ptr<Application> application_;
  FileState state_;
  std::string last_;
  std::vector<ZelvoraChoice> choices_;
  std::optional<Opened> lastOpened_;
};

}  // namespace

int runShell(const CommonOptions& options, Output& out) { return Shell(options, out).run(); }

Command shellCommand() {
  const auto options = std::make_shared<CommonOptions>();
  std::string commands;
  for (const ShellCommand& each : kShellCommands)
    commands += std::string(commands.empty() ? "" : ", ") + "`" + each.name +
                (*each.argument ? " " : "") + each.argument + "`";
  Command command{
      .name = "shell",
      .summary = "route utterances as you type them, with history",
      .about =
          "Reads utterances with line editing and a history, and routes each. A line that "
          "begins with a colon is a command, and Tab completes it: " +
          commands +
          ". A spec that changed on disk counts from the next line on; the session goes on: "
          "history, choices, locale, and what the last utterance opened. A spec that can't be "
          "used is reported, and the one from before stays.\n\n"
          "`zelvora route` without TEXT does the same when input and output are terminals and "
          "`--json` is not given. Where they are not, the shell reads plain lines."};
  addCommonOptions(command, *options);
  command.run = [options](Output& out) { return runShell(*options, out); };
  return command;
}

}  // namespace zelvora::tool
