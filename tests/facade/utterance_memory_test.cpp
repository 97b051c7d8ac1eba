#include <gtest/gtest.h>
#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <string>
#include <string_view>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/platform.h>
#include <tests/support/run_to_end.h>

#include "small_spec.h"
#include "test_application.h"

namespace {

std::atomic<std::size_t> live{0};
std::atomic<std::size_t> peak{0};

void* counted(void* memory) {
  if (!memory) throw std::bad_alloc();
  const std::size_t now = live += ::malloc_usable_size(memory);
  for (std::size_t seen = peak; now > seen && !peak.compare_exchange_weak(seen, now);) {
  }
  return memory;
}

void uncounted(void* memory) {
  if (memory) live -= ::malloc_usable_size(memory);
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) { return counted(std::malloc(size)); }
void* operator new[](std::size_t size) { return counted(std::malloc(size)); }
void operator delete(void* memory) noexcept { uncounted(memory); }
void operator delete[](void* memory) noexcept { uncounted(memory); }
void operator delete(void* memory, std::size_t) noexcept { uncounted(memory); }
void operator delete[](void* memory, std::size_t) noexcept { uncounted(memory); }

namespace zelvora {
namespace {

using testing::runToEnd;
using testing::smallSpec;
using testing::TestApplication;

std::string repeated(std::string_view piece, std::size_t size) {
  std::string text;
  text.reserve(size + piece.size());
  while (text.size() < size) text += piece;
  return text;
}

/// The most memory that routing a text made of `piece` takes, in multiples of its size as UTF-8.
double factorOf(Zelvora& zelvora, std::string_view piece, std::size_t size) {
  const std::size_t repaired = repairedUtf8(repeated(piece, size)).size();
  const std::size_t before = live;
  peak = before;
  std::string text = repeated(piece, size);
  try {
    runToEnd(zelvora.route(std::move(text)));
  } catch (const Error&) {
  }
  return static_cast<double>(peak - before) / static_cast<double>(repaired);
}

constexpr double kMaxFactor = 8;

TEST(UtteranceMemory, IsAFewTimesItsSize) {
  constexpr std::size_t kMebibyte = std::size_t{1} << 20;
  const char* const setting = std::getenv("ZELVORA_TEST_UTTERANCE_MEBIBYTES");
  const std::size_t size = (setting ? std::strtoul(setting, nullptr, 10) : 1) * kMebibyte;

  const TestApplication application;
  Platform platform = application.platform();
  platform.log = std::make_shared<SilentLogSink>();
  platform.urlSession = std::make_shared<NoNetworkSession>();
  const std::string replacements = R"("stt":{"replacementsByLocale":{"en-US":{"Kart":"cart"}}},)";
  const std::string context =
      R"("context":{"enabled":true,"synonymsByLocale":{"en":{"a":["b","c"]}},
                                 "memory":{}},)";
  for (const std::string& spec : {smallSpec(), smallSpec("", context, replacements)}) {
    Zelvora zelvora(platform, application.settings, StoredSpec::fromJson(spec));
    runToEnd(zelvora.route("open my cart"));  // what is allocated only once is not counted
    for (const char* piece :
         {"a ", "a", "open my cart ", "Open, my! ", "עגלה ", "🛒 ", "\xFF", "İ", "\n", " "}) {
      const double factor = factorOf(zelvora, piece, size);
      EXPECT_LE(factor, kMaxFactor) << piece;
      RecordProperty(piece, std::to_string(factor));
      if (setting) std::printf("%5.2f times for '%s'\n", factor, piece);
    }
  }
}

}  // namespace
}  // namespace zelvora
