#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zelvora::tool {

/// The call, a file or a stream can't be used; the text names it and the place in it.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The exit status of the process.
enum ExitStatus { kAnswered = 0, kAnswerIsNo = 1, kUnusable = 2 };

/// The longest line of standard input that is routed, in bytes, its end not counted: 1 MiB.
inline constexpr std::size_t kMaxInputLine = std::size_t{1} << 20;

/// The longest error text that a terminal is shown, in characters.
inline constexpr std::size_t kMaxShownError = 500;

/// Owns standard output. Nothing else in the tool writes to it, so that no lost byte goes
/// unnoticed: every failure to write is a UsageError.
class Output {
 public:
  Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  /// Buffered. Text for a person must have gone through a `Style` first.
  void write(std::string_view bytes);
  /// One line of JSON, flushed at once. On a terminal its control characters are escaped, which
  /// leaves the value as it is.
  void jsonLine(std::string_view json);
  void flush();
  /// Flushes what is left and checks that all of it has arrived.
  void finish();

  [[nodiscard]] bool isTerminal() const { return isTerminal_; }

 private:
  std::string pending_;
  bool isTerminal_;
};

/// Makes sure that the three standard streams are open, so that no file that is opened later gets
/// the number of one of them. Standard input or output that was closed fails on use; lines on a
/// closed standard error are lost.
void keepStandardStreams();

/// Writes one line to standard error in one piece. On a terminal it is escaped and shortened.
void printError(std::string_view message);

/// The same with the tool's name before it.
void complain(std::string_view message);

/// Writes bytes to standard error as they are, in one piece.
void printRaw(std::string_view bytes);

/// Whether standard error is a terminal.
[[nodiscard]] bool errorsGoToTerminal();

/// Control characters as \n, \x1b or \u0085; what is not UTF-8 becomes U+FFFD.
[[nodiscard]] std::string escapedForTerminal(std::string_view text);

/// How a stream shows text: escaped on a terminal, and in colours unless NO_COLOR is set; as it is
/// anywhere else.
class Style {
 public:
  /// The style that suits the file descriptor of a stream.
  static Style forDescriptor(int descriptor);
  static Style forOutput();
  static Style plain() { return Style(false, false); }

  [[nodiscard]] std::string text(std::string_view text) const;
  /// At most `kMaxShownError` characters on a terminal.
  [[nodiscard]] std::string errorText(std::string_view text) const;
  [[nodiscard]] std::string strong(std::string_view text) const { return wrapped("1", text); }
  [[nodiscard]] std::string faint(std::string_view text) const { return wrapped("2", text); }
  [[nodiscard]] std::string good(std::string_view text) const { return wrapped("32", text); }
  [[nodiscard]] std::string notice(std::string_view text) const { return wrapped("33", text); }
  [[nodiscard]] std::string bad(std::string_view text) const { return wrapped("31", text); }

  [[nodiscard]] bool isTerminal() const { return isTerminal_; }

 private:
  Style(bool isTerminal, bool coloured) : isTerminal_(isTerminal), coloured_(coloured) {}
  [[nodiscard]] std::string wrapped(const char* code, std::string_view text) const;

  bool isTerminal_;
  bool coloured_;
};

/// `text` with blanks behind it up to `width` characters.
std::string padded(std::string_view text, std::size_t width);

/// Two decimals, as in 0.87.
std::string fixed2(double value);

/// Standard input, line by line. Only a line feed ends a line; a blank line counts. A line over
/// `kMaxInputLine` is reported and skipped, and never more of it than that is kept.
class InputLines {
 public:
  /// The next line without its end; absent at the end of input. Throws UsageError when standard
  /// input can't be read.
  std::optional<std::string> next();
  /// `kUnusable` once a line was skipped.
  [[nodiscard]] int status() const { return status_; }

 private:
  struct Line {
    std::string text;
    bool isTooLong = false;
  };
  std::optional<Line> nextOfAnyLength();
  bool fill();

  std::string buffer_;
  std::size_t at_ = 0;
  std::size_t number_ = 0;
  bool isMidLine_ = false;
  int status_ = kAnswered;
};

/// Whether someone types: standard input and output are terminals.
[[nodiscard]] bool isInteractive();

/// Calls `answer` with each text or, without any, with each line of standard input as it comes.
/// Returns the exit status.
int forEachUtterance(const std::vector<std::string>& texts,
                     const std::function<void(const std::string&)>& answer);

}  // namespace zelvora::tool
