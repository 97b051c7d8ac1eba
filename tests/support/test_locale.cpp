// Compiled into every test program: with ZELVORA_TEST_LOCALE the program runs in that locale, as an
// application does whose toolkit sets the user's own.

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <locale>

namespace {

const bool isSet = [] {
  const char* const name = std::getenv("ZELVORA_TEST_LOCALE");
  if (!name || !*name) return false;
  try {
    std::locale::global(std::locale(name));  // That of C too.
    std::setlocale(LC_MESSAGES, "C");        // The tests read the system's words in English.
    return true;
  } catch (const std::exception&) {
    std::fprintf(stderr, "there is no locale %s\n", name);
    std::abort();
  }
}();

}  // namespace
