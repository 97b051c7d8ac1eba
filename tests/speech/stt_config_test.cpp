#include <ZelvoraSDK/speech/stt_config.h>

#include <gtest/gtest.h>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/base/json_read.h>
#include <ZelvoraSDK/base/json_write.h>

namespace zelvora {
namespace {

TEST(STTConfig, IsReadAndWrittenAsItsPresetsSay) {
  const struct {
    ZelvoraSTTConfig preset;
    const char* json;
  } rows[] = {
      {ZelvoraSTTConfig::localOnly(), R"({"mode":"localOnly","cloudFallbackEnabled":false})"},
      {ZelvoraSTTConfig::cloudOnly(), R"({"mode":"cloudOnly","cloudFallbackEnabled":true})"},
      {ZelvoraSTTConfig::hybrid(), R"({"mode":"hybrid","cloudFallbackEnabled":true})"},
      {ZelvoraSTTConfig::disabled(), R"({"mode":"disabled","cloudFallbackEnabled":false})"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(toJson(row.preset), row.json);
    EXPECT_EQ(decodeJson<ZelvoraSTTConfig>(row.json), row.preset) << row.json;
  }
}

TEST(STTConfig, RefusesUnknownModesAndMissingKeys) {
  const char* rows[] = {R"({"mode":"HYBRID","cloudFallbackEnabled":true})", R"({"mode":"hybrid"})",
                        R"({"cloudFallbackEnabled":true})",
                        R"({"mode":"hybrid","cloudFallbackEnabled":1})"};
  for (const char* json : rows)
    EXPECT_THROW(static_cast<void>(decodeJson<ZelvoraSTTConfig>(json)), Error) << json;
}

TEST(STTConfig, ReadsAPropertyListsWordInAnyCase) {
  const struct {
    const char* word;
    ZelvoraSTTConfig expected;
  } rows[] = {
      {"HYBRID", ZelvoraSTTConfig::hybrid()},     {"cloudOnly", ZelvoraSTTConfig::cloudOnly()},
      {"Disabled", ZelvoraSTTConfig::disabled()}, {"localonly", ZelvoraSTTConfig::localOnly()},
      {" hybrid", ZelvoraSTTConfig::localOnly()}, {"", ZelvoraSTTConfig::localOnly()},
  };
  for (const auto& row : rows) EXPECT_EQ(sttConfigFromSetting(row.word), row.expected) << row.word;
}

}  // namespace
}  // namespace zelvora
