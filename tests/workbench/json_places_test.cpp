#include <ZelvoraSDK/workbench/json_places.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/text.h>

#include <gtest/gtest.h>

#include <filesystem>

namespace zelvora {
namespace {

TEST(JsonPlaces, GivesLineAndColumnInCodePoints) {
  const std::string text =
      "\xEF\xBB\xBF{\"app\": {\"id\": \"café\", \"n\": 1},\n"
      "  \"tasks\": [ {\"k\\u0065y\": [true,\t-2.5e1 ]},\r\n"
      "\t\"שלום\", null], \"a.b\": {\"c\": 1}, \"twice\": 1, \"twice\": 2, \"\": {}}\n";
  const struct {
    const char* path;
    TextPlace place;
    const char* written;
  } rows[] = {
      {"app.id", {1, 16}, "\"café\""},
      {"app.n", {1, 29}, "1"},
      {"tasks[0].key[0]", {2, 28}, "true"},
      {"tasks[0].key[1]", {2, 34}, "-2.5e1"},
      {"tasks[1]", {3, 2}, "\"שלום\""},
      {"tasks[2]", {3, 10}, "null"},
      {"a.b", {3, 24}, "{\"c\": 1}"},
      {"a.b.c", {3, 30}, "1"},
      {"twice", {3, 55}, "2"},
  };
  const JsonPlaces places(text);
  for (const auto& row : rows) {
    const JsonPlaces::Value* found = places.find(row.path);
    ASSERT_NE(found, nullptr) << row.path;
    EXPECT_EQ(text.substr(found->begin, found->end - found->begin), row.written) << row.path;
    EXPECT_EQ(found->place, row.place)
        << row.path << " at " << found->place.line << ":" << found->place.column;
  }
}

TEST(JsonPlaces, FindsWhatIsAroundAMissingValue) {
  const std::string text = R"({"app": {"id": "a"}, "tasks": [{"id": "b"}, 3]})";
  const JsonPlaces places(text);
  const struct {
    const char* path;
    const char* around;
  } rows[] = {
      {"app.default_locale", "app"}, {"tasks[0].keywords[2]", "tasks[0]"}, {"tasks[7].id", "tasks"},
      {"tasks[1].id", "tasks[1]"},   {"routing.thresholds", ""},           {"tasks[0x", "tasks"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(places.find(row.path), nullptr) << row.path;
    EXPECT_EQ(&places.nearest(row.path), places.find(row.around)) << row.path;
  }
}

/// Expects each value that the reader sees, and nothing else, at the place found for it.
void expectSameValues(const JsonCursor& at, const JsonPlaces& places, std::string_view text) {
  const JsonPlaces::Value* found = places.find(at.path());
  ASSERT_NE(found, nullptr) << at.path();
  const JsonDocument alone = parseJson(text.substr(found->begin, found->end - found->begin));
  ASSERT_EQ(alone.root(), at.value()) << at.path();
  if (const auto* elements = at.value().if_array())
    for (std::size_t i = 0; i < elements->size(); ++i)
      expectSameValues(JsonCursor(at, i, (*elements)[i]), places, text);
  if (const auto* members = at.value().if_object())
    for (const auto& member : *members)
      expectSameValues(JsonCursor(at, {member.key().data(), member.key().size()}, member.value()),
                       places, text);
}

TEST(JsonPlaces, AgreeWithTheReaderOnEveryFileOfTheFuzzCorpus) {
  int documents = 0;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(ZELVORA_SOURCE_DIR "/fuzz/corpus")) {
    if (!entry.is_regular_file()) continue;
    const std::string text = readFile(entry.path());
    try {
      const JsonDocument document = parseJson(text);
      SCOPED_TRACE(entry.path());
      expectSameValues(JsonCursor(document.root()), JsonPlaces(text), text);
      ++documents;
    } catch (const Error&) {
      // Not JSON: there is nothing to find places in.
    }
  }
  EXPECT_GE(documents, 5);
}

}  // namespace
}  // namespace zelvora
