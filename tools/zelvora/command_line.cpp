#include "command_line.h"

#include <sqlite3.h>

#include <algorithm>
#include <boost/version.hpp>
#include <charconv>
#include <numeric>
#include <utility>

#include <ZelvoraSDK/base/library.h>
#include <ZelvoraSDK/base/text.h>

namespace zelvora::tool {
namespace {

constexpr std::size_t kColumns = 80;
constexpr std::size_t kMeaningColumn = 26;

template <class Number>
Number numberIn(const std::string& text, Number least, Number most) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end || !(number >= least && number <= most))
    throw UsageError("expected a number from " + shortestDecimal(static_cast<double>(least)) +
                     " to " + shortestDecimal(static_cast<double>(most)));
  return number;
}

/// How many insertions, deletions, replacements and swaps of neighbours turn `a` into `b`.
std::size_t distanceBetween(std::string_view a, std::string_view b) {
  std::vector<std::vector<std::size_t>> at(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  std::iota(at[0].begin(), at[0].end(), 0u);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    at[i][0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      at[i][j] = std::min(
          {at[i - 1][j] + 1, at[i][j - 1] + 1, at[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        at[i][j] = std::min(at[i][j], at[i - 2][j - 2] + 1);
    }
  }
  return at[a.size()][b.size()];
}

std::string withoutBackQuotes(std::string_view text) { return replacedAll(text, "`", ""); }

/// `text` in lines of at most `kColumns`, each but the first behind `indent` blanks. The first
/// begins at column `indent` already.
std::string wrapped(std::string_view text, std::size_t indent) {
  std::string lines;
  std::size_t column = indent;
  for (const std::string_view word : splitWords(text)) {
    const std::size_t length = characterCount(word);
    const bool isFirst = column == indent;
    if (!isFirst && column + 1 + length > kColumns) {
      lines += '\n' + std::string(indent, ' ');
      column = indent;
    } else if (!isFirst) {
      lines += ' ';
      ++column;
    }
    lines += word;
    column += length;
  }
  return lines + '\n';
}

std::string entry(const std::string& term, const std::string& meaning) {
  std::string line = "  " + padded(term, kMeaningColumn - 2);
  if (characterCount(term) > kMeaningColumn - 4)
    line = "  " + term + '\n' + std::string(kMeaningColumn, ' ');
  return line + wrapped(withoutBackQuotes(meaning), kMeaningColumn);
}

std::string meaningWithDefault(const Option& option) {
  return option.otherwise.empty() ? option.meaning : option.meaning + " [" + option.otherwise + "]";
}

std::string paragraphs(std::string_view about) {
  std::string text;
  for (std::size_t at = 0; at < about.size();) {
    const std::size_t end = std::min(about.find("\n\n", at), about.size());
    text +=
        '\n' + wrapped(withoutBackQuotes(replacedAll(about.substr(at, end - at), "\n", " ")), 0);
    at = end + 2;
  }
  return text;
}

Run printing(std::string text) {
  return [text = std::move(text)](Output& out) {
    out.write(text);
    return kAnswered;
  };
}

/// Reads the arguments of one command.
class CallReader {
 public:
  explicit CallReader(const Command& command) : command_(command) {}

  /// Whether the call only asks for help.
  bool read(const std::vector<std::string>& arguments) {
    bool optionsEnded = false;
    for (std::size_t at = 1; at < arguments.size(); ++at) {
      const std::string& argument = arguments[at];
      if (optionsEnded || argument.size() < 2 || argument[0] != '-')
        operands_.push_back(argument);
      else if (argument == "--")
        optionsEnded = true;
      else if (argument == "--help" || argument == "-h")
        return true;
      else
        at += takeOption(argument, at + 1 < arguments.size() ? &arguments[at + 1] : nullptr);
    }
    takeOperands();
    return false;
  }

 private:
  /// Returns how many of the following arguments it took.
  std::size_t takeOption(const std::string& argument, const std::string* next) const {
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const Option& option = find(name);
    if (option.value.empty()) {
      if (equals != argument.npos) throw UsageError(name + " takes no value");
      option.take("");
      return 0;
    }
    if (equals == argument.npos && !next)
      throw UsageError(name + ": " + option.value + " is missing");
    try {
      option.take(equals == argument.npos ? *next : argument.substr(equals + 1));
    } catch (const UsageError& error) {
      throw UsageError(name + ": " + error.what());
    }
    return equals == argument.npos ? 1 : 0;
  }

  [[nodiscard]] const Option& find(const std::string& name) const {
    std::vector<std::string> known = {"--help"};
    for (const Option& option : command_.options) {
      if (option.name == name) return option;
      known.push_back(option.name);
    }
    throw UsageError("unknown option " + name + "; the nearest is " + nearestTo(name, known) +
                     "; see zelvora " + command_.name + " --help");
  }

  void takeOperands() {
    const Operands& wanted = command_.operands;
    if (operands_.size() < wanted.least)
      throw UsageError(wanted.missing + "; usage: " + usageLine(command_));
    if (operands_.size() > wanted.most)
      throw UsageError("unexpected \"" + operands_[wanted.most] +
                       "\"; usage: " + usageLine(command_));
    if (wanted.take) wanted.take(std::move(operands_));
  }

  const Command& command_;
  std::vector<std::string> operands_;
};

}  // namespace

Take into(bool& flag) {
  return [&flag](const std::string&) { flag = true; };
}
Take into(std::string& text) {
  return [&text](const std::string& value) { text = value; };
}
Take into(std::optional<std::string>& text) {
  return [&text](const std::string& value) { text = value; };
}
Take into(std::filesystem::path& path) {
  return [&path](const std::string& value) { path = value; };
}
Take into(std::optional<std::filesystem::path>& path) {
  return [&path](const std::string& value) { path = value; };
}
Take into(int& number, int least, int most) {
  return
      [&number, least, most](const std::string& value) { number = numberIn(value, least, most); };
}
Take into(double& number, double least, double most) {
  return
      [&number, least, most](const std::string& value) { number = numberIn(value, least, most); };
}
Take into(std::optional<double>& number, double least, double most) {
  return
      [&number, least, most](const std::string& value) { number = numberIn(value, least, most); };
}

Option choiceOption(std::string name, std::string value, std::vector<std::string> choices,
                    std::string meaning, std::string otherwise, Take take) {
  Option option{.name = std::move(name),
                .value = std::move(value),
                .meaning = std::move(meaning),
                .otherwise = std::move(otherwise),
                .choices = choices};
  option.take = [take = std::move(take), choices = std::move(choices)](const std::string& given) {
    if (std::ranges::find(choices, given) == choices.end())
      throw UsageError("no such value: " + given + "; the nearest is " + nearestTo(given, choices));
    take(given);
  };
  return option;
}

Option quietOption(bool& quiet) {
  return {.name = "--quiet",
          .meaning = "keep the library's diagnostic lines back; errors still show",
          .take = into(quiet)};
}

Run readCommandLine(const std::vector<Command>& commands,
                    const std::vector<std::string>& arguments) {
  if (arguments.empty()) throw UsageError("no command; see zelvora --help");
  const std::string& first = arguments.front();
  if (first == "--help" || first == "-h") return printing(helpOf(commands));
  if (first == "--version") return printing(versionText());

  std::vector<std::string> known;
  for (const Command& command : commands) {
    if (command.name == first) {
      CallReader reader(command);
      return reader.read(arguments) ? printing(helpOf(command)) : command.run;
    }
    if (!command.isHidden) known.push_back(command.name);
  }
  const bool isOption = first.starts_with('-');
  const std::string name = isOption ? first.substr(0, first.find('=')) : "\"" + first + "\"";
  if (isOption) known = {"--help", "--version"};
  throw UsageError("unknown " + std::string(isOption ? "option " : "command ") + name +
                   "; the nearest is " + nearestTo(first, known) + "; see zelvora --help");
}

std::string nearestTo(std::string_view word, const std::vector<std::string>& known) {
  // A beginning of the right word is nearer than any misspelling.
  const auto distance = [&](const std::string& each) {
    return each.starts_with(word) ? 0 : distanceBetween(word, each);
  };
  return *std::ranges::min_element(known, {}, distance);
}

std::string usageLine(const Command& command) {
  std::string line = "zelvora " + command.name;
  if (!command.options.empty()) line += " [OPTION…]";
  if (!command.operands.shown.empty()) line += " " + command.operands.shown;
  return line;
}

std::string helpOf(const std::vector<Command>& commands) {
  std::string text =
      "usage: zelvora COMMAND [OPTION…] …\n\nVoice navigation for applications, from the "
      "terminal.\n\ncommands:\n";
  for (const Command& command : commands)
    if (!command.isHidden) text += entry(command.name, command.summary);
  text += "\noptions:\n" + entry("--help", "this text; every command has its own") +
          entry("--version", "the version, and what was built in");
  return text + paragraphs(kToolExitStatus);
}

std::string helpOf(const Command& command) {
  std::string text = "usage: " + usageLine(command) + "\n" + paragraphs(command.about);
  if (!command.ofThisBuild.empty()) text += paragraphs(command.ofThisBuild);
  text += "\noptions:\n";
  for (const Option& option : command.options)
    text += entry(option.name + (option.value.empty() ? "" : " " + option.value),
                  meaningWithDefault(option));
  return text + entry("--help", "this text");
}

std::string versionText() {
  std::string text = std::string(ZelvoraKit::version) + "\n";
#ifdef ZELVORA_SPEECH
  text += "speech: PocketSphinx, PulseAudio, libsndfile, speech-dispatcher\n";
#else
  text += "speech: not built in\n";
#endif
#ifdef ZELVORA_BUILD_SERVE
  text += "serve:  SQLite FTS5, Boost.Beast\n";
#else
  text += "serve:  not built in\n";
#endif
#ifdef ZELVORA_SHELL
  text += "shell:  libedit\n";
#else
  text += "shell:  plain lines, without libedit\n";
#endif
  return text + "with:   Boost " + replacedAll(BOOST_LIB_VERSION, "_", ".") + ", SQLite " +
         sqlite3_libversion() + ", " +
#ifdef __clang__
         "clang "
#else
         "g++ "
#endif
         + __VERSION__ + "\n";
}

}  // namespace zelvora::tool
