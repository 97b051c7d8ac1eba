#include <ZelvoraSDK/spec/spec_loader.h>
#include <ZelvoraSDK/spec/spec_resolution.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_parse.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/spec/json_value.h>

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "sample_spec.h"

namespace zelvora {
namespace {

/// A folder of resources, removed when the test ends.
class FolderBundle final : public AppBundle {
 public:
  FolderBundle() {
    std::string name = (std::filesystem::temp_directory_path() / "zelvora-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw Error("POSIX", errno, "no temporary folder");
    folder_ = name;
  }
  ~FolderBundle() override { std::filesystem::remove_all(folder_); }

  FolderBundle& with(const std::string& file, std::string_view bytes) {
    std::ofstream(folder_ / file, std::ios::binary) << bytes;
    return *this;
  }
  FolderBundle& withFolder(const std::string& name) {
    std::filesystem::create_directory(folder_ / name);
    return *this;
  }

  [[nodiscard]] std::optional<std::filesystem::path> resource(
      const std::string& name, const std::string& extension) const override {
    const auto path = folder_ / (name + "." + extension);
    return std::filesystem::exists(path) ? std::optional(path) : std::nullopt;
  }
  [[nodiscard]] std::optional<std::string> stringSetting(const std::string&) const override {
    return {};
  }
  [[nodiscard]] std::optional<double> numberSetting(const std::string&) const override {
    return {};
  }
  [[nodiscard]] std::optional<std::string> identifier() const override { return {}; }
  [[nodiscard]] std::string description() const override { return folder_.string(); }

 private:
  std::filesystem::path folder_;
};

AnyEncodable stored(std::string_view text) {
  return AnyEncodable(JSONValue(parseJson(text).root()));
}

Error failureOfLoading(const std::string& resource, const AppBundle& bundle) {
  try {
    (void)ZelvoraSpecLoader::loadFromBundle(resource, bundle);
  } catch (const Error& error) {
    return error;
  }
  return {"none", 0, "loaded"};
}

TEST(SpecLoader, ThrowsWhatIsWrongAndValidatesNothing) {
  FolderBundle bundle;
  bundle.with("shop.json", kSmallestFullSpec).with("cut.json", R"({"app":)").withFolder("dir.json");
  EXPECT_EQ(ZelvoraSpecLoader::loadFromBundle("shop", bundle).appId(), "shop");

  const Error missing = failureOfLoading("cart", bundle);
  EXPECT_EQ(missing.domain(), "ZelvoraSpecLoader");
  EXPECT_EQ(missing.code(), 404);
  EXPECT_EQ(missing.description(), "cart.json not found in bundle");
  EXPECT_EQ(failureOfLoading("dir", bundle).domain(), "POSIX");
  EXPECT_EQ(failureOfLoading("cut", bundle).description(),
            "line 1, column 8: unexpected end of the document");
}

TEST(SpecLoaderDeathTest, StopsOnEachUnusableResource) {
  FolderBundle bundle;
  const std::string longText(400, 'x');
  bundle.withFolder("dir.json")
      .with("empty.json", "")
      .with("cut.json", R"({"app":)")
      .with("bytes.json", "[\"\xFF\"]")
      .with("long.json", longText)
      .with("partial.json", R"({"app": {"id": "a", "default_locale": "en"}})");
  const struct {
    const char* name;
    std::string message;
  } rows[] = {
      {"none", "Fatal error: Missing spec file in app bundle: none.json"},
      {"dir", "Fatal error: Failed to read spec file dir.json: .*Is a directory"},
      {"empty", "Fatal error: Spec file empty.json is empty."},
      {"cut",
       "Fatal error: Invalid JSON in cut.json \\(e.g. trailing commas or syntax error\\): line 1, "
       "column 8: unexpected end of the document. Prefix: \\{\"app\":\n"},
      {"bytes", "line 1, column 3: invalid UTF-8. Prefix: \\(invalid UTF-8\\)\n"},
      {"long", "line 1, column 1: unexpected 'x'. Prefix: " + longText.substr(0, 300) + "\n"},
      {"partial",
       "Fatal error: Spec schema validation failed for partial.json: routing: required, but "
       "absent. "
       "Prefix: \\{\"app\""},
  };
  for (const auto& row : rows)
    EXPECT_DEATH((void)requireSpecResource(row.name, bundle), row.message) << row.name;
}

TEST(SpecLoader, KeepsTheDocumentAsItIs) {
  FolderBundle bundle;
  bundle.with("shop.json", fullSpecWith("\"app\": {", "\"extra\": [1.5], \"app\": {\"more\": {},"));
  const std::string kept = toJson(requireSpecResource("shop", bundle));
  EXPECT_TRUE(kept.starts_with(R"({"extra":[1.5],"app":{"more":{},"id":"shop")")) << kept;
}

TEST(SpecResolution, PrefersTheFullModel) {
  const auto resolved = resolveSpec(stored(kSmallestFullSpec));
  ASSERT_TRUE(resolved);
  EXPECT_EQ(resolved->spec, resolved->runtimeSpec);
  EXPECT_EQ(resolved->thresholds->choices_min_score, 3.5);
}

TEST(SpecResolution, FallsBackToTheMinimalModel) {
  const std::string_view task = R"("tasks": [{"taskId": "a", "title": "A", "screen_id": "s"}])";
  const auto bare = resolveSpec(stored("{" + std::string(task) + "}"));
  ASSERT_TRUE(bare);
  EXPECT_EQ(bare->runtimeSpec, nullptr);
  EXPECT_EQ(bare->thresholds.has_value(), false);
  EXPECT_EQ(bare->spec->tasks().at(0).screenId, "s");

  const auto routed = resolveSpec(
      stored(R"({"routing": {"thresholds": {"max_choices": 9}}, )" + std::string(task) + "}"));
  ASSERT_TRUE(routed && routed->thresholds);
  EXPECT_EQ(routed->thresholds->max_choices, 9);
  EXPECT_EQ(routed->thresholds->execute_min_score, 6.0);
  EXPECT_FALSE(resolveSpec(stored(R"({"routing": {}, )" + std::string(task) + "}"))->thresholds);
}

TEST(SpecResolution, YieldsNothingOfWhatIsNoSpec) {
  EXPECT_FALSE(resolveSpec(stored("{}")));
  EXPECT_FALSE(resolveSpec(stored(R"({"tasks": [{"title": "A"}]})")));
  EXPECT_FALSE(resolveSpec(stored(R"({"tasks": [5]})")));
  EXPECT_FALSE(resolveSpec(AnyEncodable("text")));
  EXPECT_FALSE(resolveSpec(AnyEncodable(std::nan(""))));
}

}  // namespace
}  // namespace zelvora
