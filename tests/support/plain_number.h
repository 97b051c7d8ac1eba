#pragma once

#include <locale.h>

#include <cstdlib>
#include <string>

namespace zelvora::testing {

/// While it lives, this thread reads and writes numbers with a point, whatever the locale.
class PlainNumbers {
 public:
  PlainNumbers() : before_(::uselocale(classic())) {}
  ~PlainNumbers() { ::uselocale(before_); }
  PlainNumbers(const PlainNumbers&) = delete;
  PlainNumbers& operator=(const PlainNumbers&) = delete;

 private:
  static locale_t classic() {
    static const locale_t made = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return made;
  }

  locale_t before_;
};

/// The number at the start of `text`.
inline double plainNumber(const std::string& text) {
  const PlainNumbers plainNumbers;
  return std::strtod(text.c_str(), nullptr);
}

}  // namespace zelvora::testing
