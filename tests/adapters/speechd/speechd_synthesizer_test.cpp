#include <ZelvoraSDK/adapters/speechd/speechd_synthesizer.h>

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>
#include <string>

#include <ZelvoraSDK/adapters/speechd/private/conversation.h>
#include <ZelvoraSDK/adapters/speechd/private/session.h>
#include <ZelvoraSDK/base/limits.h>
#include <tests/support/loudspeaker.h>
#include <tests/support/sound_server.h>
#include <tests/support/speech_server.h>

namespace zelvora {
namespace {

using namespace std::chrono_literals;
using testing::Loudspeaker;
using testing::SoundServer;
using testing::SpeechServer;

constexpr auto kPatience = 60s;

/// A text and how it ended.
struct Said {
  SpeechUtterance utterance(std::string text, std::string language = "en-US") {
    return {.text = std::move(text), .language = std::move(language), .onEnd = [this](bool said) {
              ended.set_value(said);
            }};  // Throws the second time.
  }
  /// Fails when it has not ended in time.
  bool wasSaid() {
    auto end = ended.get_future();
    if (end.wait_for(kPatience) == std::future_status::ready) return end.get();
    ADD_FAILURE() << "a text without an end";
    return false;
  }
  std::promise<bool> ended;
};

std::string longText() {
  std::string text;
  for (int i = 0; i < 60; ++i) text += "This takes a while and then it takes some more. ";
  return text;
}

bool isLoud(double level) { return level > 0.01; }
bool isSilent(double level) { return level < 0.0001; }

TEST(SpeechdSynthesizer, IsHeardAndSaysWhenItIsDone) {
  const SoundServer sound;
  const SpeechServer speech;
  const auto synthesizer = SpeechdSynthesizerFactory().makeSynthesizer();
  // One text has a line that would end it on its way to the daemon.
  const struct {
    const char* text;
    const char* language;
  } rows[] = {{"Your cart is open", "en-US"},
              {"no such language", "xx"},
              {"not a language", "en\r\nSTOP ALL"},
              {"one\n.\ntwo", ""},
              {"not \xFF text", ""},
              {"after that", ""}};
  for (const auto& row : rows) {
    Loudspeaker speaker;
    Said reply;
    synthesizer->speak(reply.utterance(row.text, row.language));
    EXPECT_TRUE(speaker.waitUntil(isLoud)) << row.text;
    EXPECT_TRUE(reply.wasSaid()) << row.text;
  }
}

TEST(SpeechdSynthesizer, FallsSilentForTheNextText) {
  const SoundServer sound;
  const SpeechServer speech;
  const auto synthesizer = SpeechdSynthesizerFactory().makeSynthesizer();
  Loudspeaker speaker;
  Said first, waiting, second;
  synthesizer->speak(first.utterance(longText()));
  synthesizer->speak(waiting.utterance("never begun"));
  ASSERT_TRUE(speaker.waitUntil(isLoud));
  synthesizer->stopSpeaking();
  synthesizer->speak(second.utterance("second"));
  EXPECT_FALSE(first.wasSaid());
  EXPECT_FALSE(waiting.wasSaid());
  EXPECT_TRUE(second.wasSaid());
  // The first one, several minutes long, would go on.
  EXPECT_TRUE(speaker.waitUntil(isSilent));
}

TEST(SpeechdSynthesizer, FallsSilentWhenItIsDestroyed) {
  const SoundServer sound;
  const SpeechServer speech;
  auto synthesizer = SpeechdSynthesizerFactory().makeSynthesizer();
  Loudspeaker speaker;
  Said text;
  synthesizer->speak(text.utterance(longText()));
  ASSERT_TRUE(speaker.waitUntil(isLoud));
  synthesizer.reset();
  EXPECT_FALSE(text.wasSaid());
  EXPECT_TRUE(speaker.waitUntil(isSilent));
}

TEST(SpeechdSynthesizer, DoesNotHangWithoutASoundServer) {
  SoundServer::pointNowhere();
  const SpeechServer speech;
  SpeechdSynthesizerFactory hasty({.perText = 1s, .perByte = 0s});
  auto synthesizer = hasty.makeSynthesizer();
  Said first, second, third;
  synthesizer->speak(first.utterance("nobody hears this"));
  EXPECT_FALSE(first.wasSaid());
  synthesizer->stopSpeaking();  // The daemon hangs on a cancel.
  synthesizer->speak(second.utterance("nor this"));
  EXPECT_FALSE(second.wasSaid());
  synthesizer->speak(third.utterance("nor this"));
  const auto begin = std::chrono::steady_clock::now();
  synthesizer.reset();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 1s);
  EXPECT_FALSE(third.wasSaid());
}

TEST(SpeechdSynthesizer, OutlivesTheDaemon) {
  const SoundServer sound;
  const auto synthesizer =
      SpeechdSynthesizerFactory({.perText = 10s, .perByte = 0s}).makeSynthesizer();
  for (int life = 0; life < 2; ++life) {
    SpeechServer speech;
    Said heard, cut;
    synthesizer->speak(heard.utterance("here I am"));
    EXPECT_TRUE(heard.wasSaid());
    synthesizer->speak(cut.utterance(longText()));
    Loudspeaker speaker;
    ASSERT_TRUE(speaker.waitUntil(isLoud));
    speech.kill();
    EXPECT_FALSE(cut.wasSaid());
  }
}

TEST(Protocol, SpellsLanguagesAndSpeeds) {
  EXPECT_EQ(speechd::languageCode("pt_BR.UTF-8"), "pt-BR");
  EXPECT_EQ(speechd::languageCode("en\r\nSTOP ALL"), "");
  const std::string longest(kMaxLanguageCodeBytes, 'x');
  EXPECT_EQ(speechd::languageCode(longest), longest);
  EXPECT_EQ(speechd::languageCode(longest + 'x'), "");
  EXPECT_EQ(speechd::voiceRate(SpeechUtterance::kDefaultRate), 0);
  EXPECT_EQ(speechd::voiceRate(0), -100);
  EXPECT_EQ(speechd::voiceRate(7), 100);
}

TEST(PendingTexts, WaitForEachOther) {
  using speechd::PendingTexts;
  PendingTexts pending;
  const PendingTexts::Time start{100s};
  EXPECT_EQ(pending.add({}, start, 10s).deadline, start + 10s);
  const auto second = pending.add({}, start + 1s, 5s);
  EXPECT_EQ(second.deadline, start + 15s);
  pending.takeAll();
  EXPECT_FALSE(pending.contains(second.number));
  EXPECT_EQ(pending.add({}, start + 2s, 5s).deadline, start + 7s);
}

}  // namespace
}  // namespace zelvora
