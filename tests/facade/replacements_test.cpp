#include <ZelvoraSDK/facade/local_stage.h>

#include <gtest/gtest.h>

namespace zelvora {
namespace {

TEST(Replacements, ReplaceWholeWordsWhateverTheirCase) {
  const OrderedMap<std::string> table = {
      {"Kart", "cart"}, {"kart", "never reached"}, {"check out", "checkout"}, {"uh", ""}};
  const struct {
    const char* text;
    const char* expected;
  } rows[] = {
      {"open my KART", "open my cart"},
      {"open  my   kart", "open my cart"},
      {"karts", "karts"},
      {"check out", "check out"},    // a key of two words never matches
      {"open\tkart", "open\tkart"},  // only the space splits
      {"kart!", "kart!"},
      {"uh open uh cart", " open  cart"},
  };
  for (const auto& row : rows) EXPECT_EQ(withReplacements(row.text, table), row.expected);
}

}  // namespace
}  // namespace zelvora
