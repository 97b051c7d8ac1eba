#include <ZelvoraSDK/adapters/speechd/private/conversation.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <ZelvoraSDK/base/limits.h>
#include <ZelvoraSDK/base/text.h>
#include <tests/adapters/speechd/daemon_logic.h>

namespace zelvora::speechd {
namespace {

using testing::DaemonLogic;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// A conversation with a daemon that answers at once, or when it is asked to.
class Talk {
 public:
  Conversation conversation;
  DaemonLogic daemon;
  std::vector<Actions::End> ended;
  bool hungUp = false;

  void perform(const Actions& actions) {
    toDaemon_ += actions.bytes;
    ended.insert(ended.end(), actions.ended.begin(), actions.ended.end());
    hungUp = hungUp || actions.hangUp;
  }
  /// Moves up to `count` bytes each way. False when there were none.
  bool step(std::size_t count = std::string::npos) {
    const bool moves = !toDaemon_.empty() || !toClient_.empty();
    toClient_ += daemon.take(toDaemon_.substr(0, count));
    toDaemon_.erase(0, std::min(count, toDaemon_.size()));
    const std::string news = toClient_.substr(0, count);
    toClient_.erase(0, news.size());
    perform(conversation.take(news));
    return moves;
  }
  void settle() {
    while (step()) {
    }
  }
  void say(TextNumber number, std::string text, std::string language = "") {
    perform(conversation.say(
        {.number = number, .text = std::move(text), .language = std::move(language)}));
  }
  void notify(const std::string& lines) { toClient_ += lines; }

 private:
  std::string toDaemon_;
  std::string toClient_;
};

TEST(Framing, HasOneLoneDotLineAndItIsTheLast) {
  constexpr std::string_view kAlphabet("a.\r\n\0\xff", 6);
  constexpr std::size_t kMaxLength = 6;
  std::vector<std::size_t> word;
  std::size_t texts = 0;
  const auto next = [&] {
    for (std::size_t& letter : word) {
      if (++letter < kAlphabet.size()) return;
      letter = 0;
    }
    word.push_back(0);
  };
  for (; word.size() <= kMaxLength; next(), ++texts) {
    std::string text;
    for (const std::size_t letter : word) text += kAlphabet[letter];
    const std::string framed = framedText(filteredText(text));
    ASSERT_TRUE(isValidUtf8(framed));
    ASSERT_EQ(framed.find('\0'), std::string::npos);
    // Whatever a reader takes for a line break, it finds the end of the text in the same place.
    std::string lines = "\n" + framed;
    std::erase(lines, '\r');
    ASSERT_EQ(lines.find("\n.\n"), lines.size() - 3) << ::testing::PrintToString(text);
    DaemonLogic daemon;
    daemon.take("SPEAK\r\n" + framed);
    ASSERT_THAT(daemon.commands, ElementsAre("SPEAK")) << ::testing::PrintToString(text);
    ASSERT_LE(daemon.texts.size(), 1U);
  }
  EXPECT_EQ(texts, 55987U);  // 6^0 + … + 6^6
}

TEST(Framing, LeavesTextsAsTheyAre) {
  const struct {
    const char* text;
    const char* expected;
  } rows[] = {{"a", "a\r\n.\r\n"},
              {".", "..\r\n.\r\n"},
              {"a\n.\r\n.b.", "a\r\n..\r\n..b.\r\n.\r\n"},
              {"a\r.\r", "a.\r\n.\r\n"},
              {"x\n\r.\nSET ALL VOLUME -100", "x\r\n..\r\nSET ALL VOLUME -100\r\n.\r\n"},
              {"caf\xC3\xA9", "caf\xC3\xA9\r\n.\r\n"},
              {"a\xFF", "a\xEF\xBF\xBD\r\n.\r\n"}};
  for (const auto& row : rows) EXPECT_EQ(framedText(filteredText(row.text)), row.expected);
}

TEST(AnswerReader, TakesAnswersInPiecesUpToItsLimits) {
  const std::string line = "225-" + std::string(kMaxSpeechReplyLineBytes - 4, '7');
  std::string lines;
  for (std::size_t i = 0; i < kMaxSpeechReplyLines; ++i) lines += "249-voice\r\n";
  const struct {
    std::string bytes;
    bool fits;
  } rows[] = {{line + "\r\n225 OK\r\n", true},
              {line + "7\r\n225 OK\r\n", false},
              {line + "7777", false},  // before its end has arrived
              {lines + "249 OK\r\n", true},
              {lines + "249-voice\r\n249 OK\r\n", false}};
  for (const auto& row : rows) {
    AnswerReader whole, byBytes;
    whole.take(row.bytes);
    int answers = 0;
    for (const char c : row.bytes) {
      byBytes.take({&c, 1});
      while (byBytes.next()) ++answers;
    }
    EXPECT_EQ(whole.next().has_value(), row.fits);
    EXPECT_EQ(whole.isOverfull(), !row.fits);
    EXPECT_EQ(answers, row.fits ? 1 : 0);
    EXPECT_EQ(byBytes.isOverfull(), !row.fits);
  }
}

TEST(Conversation, SetsUpEvenWhenItsFirstTextIsCancelled) {
  // Cancelled after each step of the handshake.
  for (int steps = 0; steps < 12; ++steps) {
    Talk talk;
    talk.say(1, "cancelled");
    talk.perform(talk.conversation.begin());
    for (int i = 0; i < steps; ++i) talk.step();
    talk.perform(talk.conversation.cancel());
    talk.say(2, "said");
    talk.settle();
    EXPECT_THAT(talk.daemon.commands, ::testing::IsSupersetOf({"SET SELF NOTIFICATION END ON",
                                                               "SET SELF NOTIFICATION CANCEL ON"}))
        << steps;
    ASSERT_THAT(talk.daemon.texts, ::testing::Not(IsEmpty())) << steps;
    EXPECT_EQ(talk.daemon.texts.back(), "said");
    talk.notify(talk.daemon.finish());
    talk.settle();
    EXPECT_THAT(talk.ended, ::testing::Contains(Actions::End{2, true})) << steps;
    EXPECT_EQ(talk.conversation.state(), Conversation::State::ready);
  }
}

TEST(Conversation, SpeaksAnUnknownLanguageInTheDefaultVoice) {
  Talk talk;
  talk.perform(talk.conversation.begin());
  talk.say(1, "eins", "de_DE.UTF-8");
  talk.say(2, "zwei", "de-DE");
  talk.say(3, "nothing known", "xx");
  talk.say(4, "no code", "en\r\nSTOP ALL");
  talk.settle();
  using Said = std::vector<std::pair<std::string, std::string>>;
  // The voice stays that of the last known language, as in the daemon's modules.
  EXPECT_EQ(talk.daemon.said, (Said{{"en", ""},
                                    {"de-DE", "eins"},
                                    {"de-DE", "zwei"},
                                    {"en", ""},
                                    {"en", "nothing known"},
                                    {"en", "no code"}}));
}

TEST(Conversation, ReportsEachEndOnce) {
  Talk talk;
  talk.perform(talk.conversation.begin());
  talk.say(1, "one");
  talk.say(2, "\r");  // Nothing of it can be said.
  talk.say(3, "three");
  talk.say(4, "four");
  talk.settle();
  EXPECT_THAT(talk.ended, ElementsAre(Actions::End{2, false}));
  talk.conversation.forget(3);
  talk.notify("702-1\r\n702-9\r\n702 END\r\n702-1\r\n702 END\r\n703-2\r\n703 CANCELED\r\n");
  talk.notify("703-3\r\n703 CANCELED\r\n702-99\r\n702 END\r\n225 OK\r\n702 END\r\n");
  talk.settle();
  EXPECT_THAT(talk.ended,
              ElementsAre(Actions::End{2, false}, Actions::End{1, true}, Actions::End{4, false}));
  talk.perform(talk.conversation.close());
  EXPECT_TRUE(talk.hungUp);
  talk.say(5, "too late");
  talk.notify("230 OK\r\n");
  talk.settle();
  EXPECT_EQ(talk.ended.back(), (Actions::End{5, false}));
  EXPECT_THAT(talk.daemon.texts, SizeIs(3));
}

TEST(Conversation, AcceptsAnEndThatComesBeforeTheTextsNumber) {
  Talk talk;
  talk.daemon.endsEarly = true;
  talk.perform(talk.conversation.begin());
  talk.say(1, "one");
  talk.settle();
  EXPECT_THAT(talk.ended, ElementsAre(Actions::End{1, true}));
}

TEST(Conversation, EndsARefusedText) {
  Talk talk;
  talk.perform(talk.conversation.begin());
  talk.settle();
  talk.daemon.refusesTexts = true;
  talk.say(1, "refused\n.\nSTOP ALL");
  talk.settle();
  EXPECT_THAT(talk.ended, ElementsAre(Actions::End{1, false}));
  EXPECT_THAT(talk.daemon.texts, IsEmpty());
  EXPECT_THAT(talk.daemon.commands, ::testing::Not(::testing::Contains("STOP ALL")));
}

TEST(Conversation, ClosesAtEveryStepSoThatTheDaemonFallsSilent) {
  for (int steps = 0; steps < 60; ++steps) {
    Talk talk;
    talk.perform(talk.conversation.begin());
    talk.say(1, "one", "de");
    talk.say(2, "two");
    for (int i = 0; i < steps; ++i) talk.step(5);
    talk.perform(talk.conversation.close());
    const auto ended = talk.ended;
    talk.settle();
    EXPECT_EQ(talk.conversation.state(), Conversation::State::closed);
    EXPECT_TRUE(talk.hungUp);
    EXPECT_EQ(talk.ended, ended) << "nothing ends after the close";
    EXPECT_EQ(talk.daemon.unfinished, 0) << "after " << steps << " steps";
  }
}

TEST(Conversation, HoldsItsInvariantsInAnyOrderOfEvents) {
  std::mt19937 random(7);
  const auto below = [&](int limit) { return static_cast<int>(random() % unsigned(limit)); };
  const std::vector<std::string> languages{"", "de", "xx", "en", "bad code"};
  const std::set<std::string> known{"SET SELF CLIENT_NAME unknown:zelvora:main",
                                    "SET SELF PRIORITY MESSAGE",
                                    "SET SELF NOTIFICATION END ON",
                                    "SET SELF NOTIFICATION CANCEL ON",
                                    "GET LANGUAGE",
                                    "SET SELF LANGUAGE de",
                                    "SET SELF LANGUAGE xx",
                                    "SET SELF LANGUAGE en",
                                    "SET SELF RATE 0",
                                    "SPEAK",
                                    "CANCEL SELF"};
  for (int round = 0; round < 300; ++round) {
    Talk talk;
    std::set<TextNumber> wanted;
    TextNumber last = 0;
    const bool beginsEarly = below(2) == 0;
    if (beginsEarly) talk.perform(talk.conversation.begin());
    for (int event = 0; event < 60; ++event) {
      switch (below(6)) {
        case 0:
          wanted.insert(++last);
          talk.say(last, "STOP ALL\n.\nSTOP ALL\r\n" + std::to_string(last),
                   languages[std::size_t(below(5))]);
          break;
        case 1:
          if (below(3) == 0) {
            talk.perform(talk.conversation.cancel());
            wanted.clear();
          }
          break;
        case 2:
          if (last > 0 && below(2) == 0) {
            const TextNumber number = 1 + TextNumber(below(int(last)));
            talk.conversation.forget(number);
            wanted.erase(number);
          }
          break;
        case 3: talk.notify(talk.daemon.finish()); break;
        default: talk.step(std::size_t(1 + below(20)));
      }
    }
    if (!beginsEarly) talk.perform(talk.conversation.begin());
    talk.settle();
    talk.notify(talk.daemon.finish());
    talk.settle();
    EXPECT_EQ(talk.conversation.state(), Conversation::State::ready);
    std::map<TextNumber, int> ends;
    for (const auto& end : talk.ended) ++ends[end.number];
    for (const auto& [number, count] : ends) EXPECT_EQ(count, 1) << number;
    for (const TextNumber number : wanted)
      EXPECT_THAT(talk.ended, ::testing::Contains(Actions::End{number, true}));
    for (const std::string& command : talk.daemon.commands)
      EXPECT_TRUE(known.contains(command)) << command;
    EXPECT_TRUE(talk.daemon.commands.size() < 4 ||
                talk.daemon.commands[2] == "SET SELF NOTIFICATION END ON");
  }
}

}  // namespace
}  // namespace zelvora::speechd
