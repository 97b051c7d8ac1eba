#include <ZelvoraSDK/spec/stored_spec.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>
#include <ZelvoraSDK/spec/json_value.h>
#include <ZelvoraSDK/testing/system.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "sample_spec.h"

namespace zelvora {
namespace {

/// A bundle over its own files, which are deleted with it.
class ResourceFolder {
 public:
  ResourceFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "zelvora-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw Error("POSIX", errno, "no temporary folder");
    folder_ = name;
  }
  ~ResourceFolder() { std::filesystem::remove_all(folder_); }
  ResourceFolder(const ResourceFolder&) = delete;
  ResourceFolder& operator=(const ResourceFolder&) = delete;

  ResourceFolder& with(const std::string& file, std::string_view bytes) {
    std::ofstream(place(file), std::ios::binary) << bytes;
    return *this;
  }
  ResourceFolder& withFolder(const std::string& name) {
    std::filesystem::create_directory(place(name));
    return *this;
  }

  [[nodiscard]] const AppBundle& bundle() const { return bundle_; }

 private:
  std::filesystem::path place(const std::string& file) {
    return bundle_.resources[file] = folder_ / file;
  }

  std::filesystem::path folder_;
  testing::MemoryBundle bundle_;
};

ResolvedSpec resolve(std::string_view text) {
  return StoredSpec(AnyEncodable(JSONValue(parseJson(text).root()))).resolve();
}

Error failureOfLoading(const std::string& resource, const AppBundle& bundle) {
  try {
    (void)ZelvoraSpecLoader::loadFromBundle(resource, bundle);
  } catch (const Error& error) {
    return error;
  }
  return {"none", 0, "loaded"};
}

TEST(SpecLoader, ThrowsWhatIsWrongAndDoesNotValidate) {
  ResourceFolder folder;
  folder.with("shop.json", kSmallestFullSpec).with("cut.json", R"({"app":)").withFolder("dir.json");
  EXPECT_EQ(ZelvoraSpecLoader::loadFromBundle("shop", folder.bundle()).appId(), "shop");

  const Error missing = failureOfLoading("cart", folder.bundle());
  EXPECT_EQ(missing.domain(), "ZelvoraSpecLoader");
  EXPECT_EQ(missing.code(), 404);
  EXPECT_EQ(missing.description(), "cart.json not found in bundle");
  EXPECT_EQ(failureOfLoading("dir", folder.bundle()).domain(), "POSIX");
  EXPECT_EQ(failureOfLoading("cut", folder.bundle()).description(),
            "line 1, column 8: unexpected end of the document");
}

TEST(SpecLoaderDeathTest, StopsOnEachUnusableResource) {
  ResourceFolder folder;
  const std::string longText(400, 'x');
  folder.withFolder("dir.json")
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
    EXPECT_DEATH((void)requireSpecResource(row.name, folder.bundle()), row.message) << row.name;
}

TEST(SpecLoader, KeepsTheDocumentAsItIs) {
  ResourceFolder folder;
  folder.with("shop.json", fullSpecWith("\"app\": {", "\"extra\": [1.5], \"app\": {\"more\": {},"));
  const std::string kept = toJson(requireSpecResource("shop", folder.bundle()));
  EXPECT_TRUE(kept.starts_with(R"({"extra":[1.5],"app":{"more":{},"id":"shop")")) << kept;
}

TEST(SpecResolution, PrefersTheFullModel) {
  const ResolvedSpec resolved = resolve(kSmallestFullSpec);
  EXPECT_EQ(resolved.reading, SpecReading::full);
  EXPECT_EQ(resolved.spec, resolved.runtimeSpec);
  EXPECT_EQ(resolved.thresholds->choices_min_score, 3.5);
  EXPECT_EQ(resolved.libraryLine(), std::nullopt);
}

TEST(SpecResolution, FallsBackToTheMinimalModel) {
  const std::string_view task = R"("tasks": [{"taskId": "a", "title": "A", "screen_id": "s"}])";
  const ResolvedSpec bare = resolve("{" + std::string(task) + "}");
  ASSERT_EQ(bare.reading, SpecReading::minimal);
  EXPECT_EQ(bare.runtimeSpec, nullptr);
  EXPECT_EQ(bare.thresholds.has_value(), false);
  EXPECT_EQ(bare.spec->tasks().at(0).screenId, "s");
  EXPECT_EQ(bare.libraryLine(),
            "[Zelvora][Spec] Only the tasks of this spec are used: app: required, but absent");

  const ResolvedSpec routed =
      resolve(R"({"routing": {"thresholds": {"max_choices": 9}}, )" + std::string(task) + "}");
  ASSERT_TRUE(routed.spec && routed.thresholds);
  EXPECT_EQ(routed.thresholds->max_choices, 9);
  EXPECT_EQ(routed.thresholds->execute_min_score, 6.0);
  EXPECT_FALSE(resolve(R"({"routing": {}, )" + std::string(task) + "}").thresholds);
}

TEST(SpecResolution, YieldsNothingForAnInvalidSpec) {
  const StoredSpec rows[] = {
      StoredSpec::fromAnyJson("{}"),
      StoredSpec::fromAnyJson(R"({"tasks": [{"title": "A"}]})"),
      StoredSpec::fromAnyJson(R"({"tasks": [5]})"),
      AnyEncodable(JSONValue("text")),
      AnyEncodable(std::nan("")),
  };
  for (const StoredSpec& row : rows) {
    const ResolvedSpec resolved = row.resolve();
    EXPECT_EQ(resolved.reading, SpecReading::none);
    EXPECT_EQ(resolved.spec, nullptr);
    EXPECT_TRUE(resolved.libraryLine()->starts_with("[Zelvora][Spec] This spec can't be used: "))
        << *resolved.libraryLine();
  }
}

/// The description of what `make` throws.
template <class Make>
std::string failureOf(Make make) {
  try {
    make();
  } catch (const Error& error) {
    return error.description();
  }
  return "nothing thrown";
}

TEST(StoredSpec, LoadsFromTextInOneCallAndSaysWhatIsWrongWithIt) {
  const StoredSpec full = StoredSpec::fromJson(kSmallestFullSpec);
  EXPECT_EQ(full.resolve().reading, SpecReading::full);
  EXPECT_EQ(full.resolve().spec, full.resolve().spec);  // decoded once
  EXPECT_EQ(toJson(full), toJson(JSONValue(parseJson(kSmallestFullSpec).root())));
  EXPECT_EQ(StoredSpec::fromJson(R"({"tasks":[{"id":"a","title":"A","screenId":"s"}]})")
                .resolve()
                .reading,
            SpecReading::minimal);
  const struct {
    std::string text;
    const char* expected;
  } rows[] = {
      {"{\n  \"tasks\": [,]}", "line 2, column 13: unexpected ','"},
      {fullSpecWith("\"execute_min_score\": 6", "\"execute_min_score\": \"6\""),
       "routing.thresholds.execute_min_score: expected Double, found string"},
      {"[]", "the document: expected Object, found array"},
      {R"({"tasks": []})", "app: required, but absent"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(failureOf([&row] { (void)StoredSpec::fromJson(row.text); }), row.expected);
}

TEST(StoredSpec, LoadsFromAFileWhoseNameStartsEachError) {
  ResourceFolder folder;
  folder.with("shop.json", kSmallestFullSpec).with("cut.json", R"({"app":)");
  const auto path = [&folder](const char* name) { return *folder.bundle().resource(name, "json"); };
  EXPECT_EQ(StoredSpec::fromFile(path("shop")).resolve().reading, SpecReading::full);
  EXPECT_EQ(failureOf([&] { (void)StoredSpec::fromFile(path("cut")); }),
            path("cut").string() + ": line 1, column 8: unexpected end of the document");
  EXPECT_THROW((void)StoredSpec::fromFile("/nowhere/at/all.json"), Error);
}

}  // namespace
}  // namespace zelvora
