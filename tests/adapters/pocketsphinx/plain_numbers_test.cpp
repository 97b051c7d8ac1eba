#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include <ZelvoraSDK/adapters/pocketsphinx/private/decoder.h>
#include <tests/support/german_numbers.h>
#include <tests/support/synthetic_voice.h>

namespace zelvora::sphinx {
namespace {

using zelvora::testing::GermanNumbers;

std::string heard(const std::vector<std::int16_t>& sound) {
  Decoder decoder({"open my cart", "track my order", "show me the size guide"});
  decoder.begin({});
  decoder.hear(sound);
  const SpeechResult result = decoder.end();
  std::string text = result.text;
  for (const SpeechSegment& segment : result.segments)
    text += " " + std::to_string(std::lround(segment.confidence * 1'000'000));
  return text;
}

TEST(PlainNumbers, AreReadAndWrittenInAnyLocale) {
  const std::string model = arpaTrigram({{"open", "my", "cart"}, {"open", "orders"}});
  EXPECT_THAT(model, ::testing::HasSubstr("-0.30103"));
  const auto sound = zelvora::testing::spoken("track my order");
  const std::string here = heard(sound);
  EXPECT_THAT(here, ::testing::StartsWith("track my order"));
  const GermanNumbers german;
  EXPECT_EQ(arpaTrigram({{"open", "my", "cart"}, {"open", "orders"}}), model);
  EXPECT_EQ(heard(sound), here) << "to the last digit of the confidence";
}

}  // namespace
}  // namespace zelvora::sphinx
