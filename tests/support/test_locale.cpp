// Compiled into every test program: with ZELVORA_TEST_LOCALE the program runs in that locale, like
// an application whose toolkit sets the user's locale.

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
    std::locale::global(std::locale(name));  // Sets C's locale too.
    std::setlocale(LC_MESSAGES, "C");        // The tests read the system's words in English.
    return true;
  } catch (const std::exception&) {
    std::fprintf(stderr, "there is no locale %s\n", name);
    std::abort();
  }
}();

}  // namespace
