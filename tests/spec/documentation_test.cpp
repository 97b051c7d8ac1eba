#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/spec/minimal_spec.h>

#include <gtest/gtest.h>

namespace zelvora {
namespace {

/// The fenced JSON examples of docs/spec-format.md, in order.
std::vector<std::string> documentedExamples() {
  constexpr std::string_view kFence = "```json\n";
  const std::string page = readFile(ZELVORA_SOURCE_DIR "/docs/spec-format.md");
  std::vector<std::string> examples;
  for (std::size_t at = page.find(kFence); at != page.npos; at = page.find(kFence, at)) {
    at += kFence.size();
    examples.push_back(page.substr(at, page.find("```", at) - at));
  }
  return examples;
}

TEST(SpecFormatPage, ShowsSpecsThatDecodeAndValidate) {
  const auto examples = documentedExamples();
  ASSERT_EQ(examples.size(), 2u);
  const auto full = decodeJson<RuntimeSpec>(examples[0]);
  EXPECT_EQ(full.tasks().size(), 2u);
  EXPECT_EQ(full.validateSpec(), std::vector<std::string>{});
  EXPECT_THROW((void)decodeJson<RuntimeSpec>(examples[1]), Error);
  const auto minimal = decodeJson<MinimalRuntimeSpec>(examples[1]);
  EXPECT_EQ(minimal.tasks().size(), 1u);
  // Minimal on purpose: a file with an app would count as a broken full spec.
  EXPECT_EQ(minimal.validateSpec(), std::vector<std::string>{"appId is empty"});
}

}  // namespace
}  // namespace zelvora
