#include <ZelvoraSDK/base/error.h>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace zelvora {

Error::Error(std::string domain, int code, std::string description)
    : domain_(std::move(domain)), code_(code), description_(std::move(description)) {}

std::string describeFailure(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const std::exception& error) {
    return error.what();
  } catch (...) {
    return "Unknown error";
  }
}

void fatalError(std::string_view message) {
  std::fprintf(stderr, "Fatal error: %.*s\n", static_cast<int>(message.size()), message.data());
  std::abort();
}

}  // namespace zelvora
