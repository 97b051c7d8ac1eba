#pragma once

#include <exception>
#include <string>
#include <string_view>

#include <ZelvoraSDK/base/library.h>

namespace zelvora {

/// The one failure type of the library: which room failed, a number, and a sentence for a person.
class ZELVORA_EXPORT Error : public std::exception {
 public:
  Error(std::string domain, int code, std::string description);

  /// A word that says whose numbering `code` follows, e.g. "ZelvoraClient".
  [[nodiscard]] const std::string& domain() const { return domain_; }
  /// An HTTP status, or a number of the domain's own.
  [[nodiscard]] int code() const { return code_; }
  /// Fit to be shown to a user; never holds a secret.
  [[nodiscard]] const std::string& description() const { return description_; }
  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::string domain_;
  int code_;
  std::string description_;
};

/// The description of the thrown object: an `Error`'s own, else the exception's `what()`.
ZELVORA_EXPORT std::string describeFailure(const std::exception_ptr& failure);

/// Ends the process over a programming error of the host application: writes "Fatal error: " and
/// `message` to standard error and aborts.
[[noreturn]] ZELVORA_EXPORT void fatalError(std::string_view message);

}  // namespace zelvora
