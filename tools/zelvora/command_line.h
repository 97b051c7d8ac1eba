#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "output.h"

namespace zelvora::tool {

// What help, man page and docs/tool.md say of the whole tool.
inline constexpr const char* kToolAbout =
    "`zelvora` runs the library exactly as an application would: it builds one façade, hands it "
    "utterances and prints what `onResult` delivers. It adds no routing of its own.\n\n"
    "Results go to standard output; the library's diagnostic lines, progress and errors go to "
    "standard error. `--` ends the options. On a terminal, diagnostics are dim and follow the "
    "answer, control characters are escaped and error texts cut at 500 characters; piped output "
    "keeps its bytes.";
inline constexpr const char* kToolExitStatus =
    "The exit status is 0 when every answer was delivered, 1 when the answer is no (a spec with "
    "problems), and 2 when the call or an input file can't be used, when input can't be read or "
    "output can't be written; then one line on standard error names the file and the place in it. "
    "A fatal error of the library ends the tool with the library's own message.";
inline constexpr const char* kToolEnvironment =
    "`ZELVORA_NOW=SECONDS` freezes the clock at that many seconds since 1970, for runs that can be "
    "repeated. `ZELVORA_ACCESS_TOKEN` holds the backend access token, which is never printed. "
    "`NO_COLOR` keeps colours and progress bars away; without it they appear on a terminal only.";

/// What a value names, so that a shell can complete it.
enum class Completes { nothing, files, folders, taskIds, screenIds };

/// Takes the text of an option's value; a flag's is empty. Throws UsageError with the reason.
using Take = std::function<void(const std::string& value)>;

/// One option of a command. Help, man page, docs/tool.md and completion scripts are made from it.
struct Option {
  std::string name;       ///< With its dashes.
  std::string value;      ///< The placeholder of its value, as in FILE; empty for a flag.
  std::string meaning;    ///< A phrase without a full stop; `code` in back quotes.
  std::string otherwise;  ///< What holds without the option; empty: off, or nothing.
  Take take;
  Completes completes = Completes::nothing;
  std::vector<std::string> choices = {};  ///< All values there are, if they can be listed.
  bool isCommon = false;                  ///< Described once for all commands.
};

/// What a command takes besides options.
struct Operands {
  std::string shown;    ///< As in the usage line: "[TEXT…]".
  std::string missing;  ///< The complaint about fewer than `least`.
  std::size_t least = 0;
  std::size_t most = std::numeric_limits<std::size_t>::max();
  std::function<void(std::vector<std::string>)> take;
  Completes completes = Completes::nothing;
  std::vector<std::string> choices = {};
};

/// Runs what the call asks for and returns the exit status.
using Run = std::function<int(Output&)>;

/// One command of the tool.
struct Command {
  std::string name;
  std::string summary;  ///< One line for the list of commands.
  std::string about;    ///< Paragraphs, with blank lines between them; `code` in back quotes.
  std::string ofThisBuild = {};  ///< A last paragraph that only `--help` shows.
  Operands operands = {};
  std::vector<Option> options = {};
  Run run = {};
  bool isHidden = false;  ///< Not listed, not completed.
};

// Ready-made takers. What they write to must live as long as the command.
Take into(bool& flag);
Take into(std::string& text);
Take into(std::optional<std::string>& text);
Take into(std::filesystem::path& path);
Take into(std::optional<std::filesystem::path>& path);
/// A number from `least` to `most`, both included.
Take into(int& number, int least, int most);
Take into(double& number, double least, double most);
Take into(std::optional<double>& number, double least, double most);

/// An option whose value is one of `choices`, which the completion offers.
Option choiceOption(std::string name, std::string value, std::vector<std::string> choices,
                    std::string meaning, std::string otherwise, Take take);

/// `--quiet` for a command without the common options, which include it.
Option quietOption(bool& quiet);

/// Reads a call: the command's name, then options and operands in any order. `--name VALUE` and
/// `--name=VALUE` are the same, the last of several counts, and `--` ends the options. Operands are
/// taken literally. The result runs the command, or prints the help or the version asked for.
/// Throws UsageError.
Run readCommandLine(const std::vector<Command>& commands,
                    const std::vector<std::string>& arguments);

/// The one of `known` that is the fewest edits away from `word`. REQUIRES: `known` is not empty.
std::string nearestTo(std::string_view word, const std::vector<std::string>& known);

/// "zelvora route [OPTION…] [TEXT…]".
std::string usageLine(const Command& command);

/// What `zelvora --help` and `zelvora COMMAND --help` print, for 80 columns.
std::string helpOf(const std::vector<Command>& commands);
std::string helpOf(const Command& command);

/// What `zelvora --version` prints: the version, then what was built in.
std::string versionText();

}  // namespace zelvora::tool
