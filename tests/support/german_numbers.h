#pragma once

#include <locale.h>
#include <stdlib.h>

#include <stdexcept>
#include <string>

namespace zelvora::testing {

/// While it lives the process writes and reads numbers as Germans do: "0,5". The tests build the
/// locale themselves.
class GermanNumbers {
 public:
  GermanNumbers() {
    ::setenv("LOCPATH", ZELVORA_TEST_LOCALES, 0);
    if (!::setlocale(LC_ALL, "de_DE.UTF-8") || ::localeconv()->decimal_point != std::string(","))
      throw std::runtime_error("there is no German locale in " ZELVORA_TEST_LOCALES);
  }
  ~GermanNumbers() { ::setlocale(LC_ALL, before_.c_str()); }
  GermanNumbers(const GermanNumbers&) = delete;
  GermanNumbers& operator=(const GermanNumbers&) = delete;

 private:
  std::string before_ = ::setlocale(LC_ALL, nullptr);
};

}  // namespace zelvora::testing
