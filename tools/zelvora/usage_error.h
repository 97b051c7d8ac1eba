#pragma once

#include <stdexcept>
#include <string>

namespace zelvora::tool {

/// The call or an input file can't be used; the text names the file and the place in it.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What the process ends with.
enum ExitStatus { kAnswered = 0, kAnswerIsNo = 1, kUnusable = 2 };

}  // namespace zelvora::tool
