#include "output.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <system_error>
#include <utility>

#include <ZelvoraSDK/base/text.h>

namespace zelvora::tool {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 16;

[[noreturn]] void failOn(const char* stream) {
  throw UsageError(std::string(stream) + ": " + std::generic_category().message(errno));
}

/// Writes all of `bytes`. False, with errno set, when that is not possible.
bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno == EAGAIN) {  // somebody made the stream non-blocking
      pollfd ready{.fd = descriptor, .events = POLLOUT, .revents = 0};
      ::poll(&ready, 1, -1);
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

std::string hex(unsigned value, std::size_t width) {
  std::array<char, 8> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
  const std::string text(digits.data(), end);
  return std::string(width > text.size() ? width - text.size() : 0, '0') + text;
}

bool isControl(char32_t value) { return value < 0x20 || (value >= 0x7F && value < 0xA0); }

std::string escaped(char32_t control) {
  if (control == '\n') return "\\n";
  if (control == '\r') return "\\r";
  if (control == '\t') return "\\t";
  return (control < 0x80 ? "\\x" : "\\u") +
         hex(static_cast<unsigned>(control), control < 0x80 ? 2 : 4);
}

/// `text` with each control character as `write` renders it.
template <class Write>
std::string withControls(std::string_view text, const Write& write) {
  std::string result;
  while (!text.empty()) {
    const auto [value, length] = firstCodePoint(text);
    if (isControl(value))
      result += write(value);
    else
      result += text.substr(0, length);
    text.remove_prefix(length);
  }
  return result;
}

std::string shortened(std::string_view text) {
  const std::string_view start = firstCharacters(text, kMaxShownError);
  return std::string(start) + (start.size() < text.size() ? "…" : "");
}

}  // namespace

Output::Output() : isTerminal_(::isatty(STDOUT_FILENO) != 0) {}

void Output::write(std::string_view bytes) {
  pending_ += bytes;
  if (pending_.size() > kBufferSize) flush();
}

void Output::jsonLine(std::string_view json) {
  // JSON leaves DEL and U+0080 to U+009F as they are, and terminals obey some of them.
  if (isTerminal_)
    write(withControls(
        json, [](char32_t control) { return "\\u" + hex(static_cast<unsigned>(control), 4); }));
  else
    write(json);
  write("\n");
  flush();
}

void Output::flush() {
  const std::string bytes = std::exchange(pending_, {});
  if (!writeAll(STDOUT_FILENO, bytes)) failOn("standard output");
}

void Output::finish() {
  flush();
  // Some file systems report lost bytes only when a file is closed.
  const int copy = ::dup(STDOUT_FILENO);
  if (copy >= 0 && ::close(copy) != 0 && errno != EINTR) failOn("standard output");
}

void keepStandardStreams() {
  // Input and output the wrong way round on purpose, so that using them fails. Error lines are
  // lost.
  const struct {
    int stream;
    int mode;
  } rows[] = {{STDIN_FILENO, O_WRONLY}, {STDOUT_FILENO, O_RDONLY}, {STDERR_FILENO, O_WRONLY}};
  for (const auto& row : rows)
    if (::fcntl(row.stream, F_GETFD) < 0 && errno == EBADF) ::open("/dev/null", row.mode);
}

bool errorsGoToTerminal() { return ::isatty(STDERR_FILENO) != 0; }

void printError(std::string_view message) {
  // If this can't be written, there is nowhere left to report it. A live line may be on the screen.
  const std::string line = errorsGoToTerminal()
                               ? "\r\033[K" + escapedForTerminal(shortened(message))
                               : std::string(message);
  printRaw(line + "\n");
}

void printRaw(std::string_view bytes) { writeAll(STDERR_FILENO, bytes); }

void complain(std::string_view message) { printError("zelvora: " + std::string(message)); }

std::string escapedForTerminal(std::string_view text) {
  return withControls(repairedUtf8(text), escaped);
}

Style Style::forDescriptor(int descriptor) {
  const char* noColor = std::getenv("NO_COLOR");
  const bool isTerminal = ::isatty(descriptor) != 0;
  return {isTerminal, isTerminal && (!noColor || !*noColor)};
}

Style Style::forOutput() { return forDescriptor(STDOUT_FILENO); }

std::string Style::text(std::string_view text) const {
  return isTerminal_ ? escapedForTerminal(text) : std::string(text);
}

std::string Style::errorText(std::string_view text) const {
  return isTerminal_ ? escapedForTerminal(shortened(text)) : std::string(text);
}

std::string Style::wrapped(const char* code, std::string_view text) const {
  const std::string shown = this->text(text);
  return coloured_ ? std::string("\033[") + code + "m" + shown + "\033[0m" : shown;
}

std::string padded(std::string_view text, std::size_t width) {
  const std::size_t length = characterCount(text);
  return std::string(text) + std::string(width > length ? width - length : 0, ' ');
}

std::string fixed2(double value) {
  std::array<char, 400> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                 std::chars_format::fixed, 2)
                       .ptr;
  return {digits.data(), end};
}

std::optional<std::string> InputLines::next() {
  while (auto line = nextOfAnyLength()) {
    ++number_;
    if (!line->isTooLong) return std::move(line->text);
    status_ = kUnusable;
    complain("standard input, line " + std::to_string(number_) + ": longer than 1 MiB, not routed");
  }
  return std::nullopt;
}

std::optional<InputLines::Line> InputLines::nextOfAnyLength() {
  Line line;
  for (;;) {
    const std::size_t end = std::min(buffer_.find('\n', at_), buffer_.size());
    const std::string_view piece = std::string_view(buffer_).substr(at_, end - at_);
    line.isTooLong = line.isTooLong || line.text.size() + piece.size() > kMaxInputLine;
    line.text = line.isTooLong ? std::string() : std::move(line.text) + std::string(piece);
    isMidLine_ = isMidLine_ || !piece.empty();
    at_ = std::min(end + 1, buffer_.size());
    if (end < buffer_.size() || !fill()) {
      const bool isLine = end < buffer_.size() || isMidLine_;
      isMidLine_ = false;
      return isLine ? std::optional(std::move(line)) : std::nullopt;
    }
  }
}

/// False at the end of input.
bool InputLines::fill() {
  buffer_.resize(kBufferSize);
  at_ = 0;
  ssize_t count = 0;
  while ((count = ::read(STDIN_FILENO, buffer_.data(), buffer_.size())) < 0) {
    if (errno == EAGAIN) {
      pollfd ready{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
      ::poll(&ready, 1, -1);
    } else if (errno != EINTR) {
      buffer_.clear();
      failOn("standard input");
    }
  }
  buffer_.resize(static_cast<std::size_t>(count));
  return count > 0;
}

bool isInteractive() { return ::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0; }

int forEachUtterance(const std::vector<std::string>& texts,
                     const std::function<void(const std::string&)>& answer) {
  for (const std::string& text : texts) answer(text);
  if (!texts.empty()) return kAnswered;
  InputLines lines;
  while (const auto line = lines.next()) answer(*line);
  return lines.status();
}

}  // namespace zelvora::tool
