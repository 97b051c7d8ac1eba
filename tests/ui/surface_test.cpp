#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtTest/QTest>
#include <algorithm>
#include <map>

#include <ZelvoraSDK/ui/private/wave.h>
#include <ZelvoraSDK/ui/suggestions.h>
#include <tests/ui/conversation.h>
#include <tests/ui/geometry.h>

namespace zelvora {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> strings(const QVariant& list) {
  std::vector<std::string> result;
  for (const QVariant& entry : list.toList()) result.push_back(entry.toString().toStdString());
  return result;
}

TEST(Surface, IsLaidOutAtEverySizeInEveryLanguageAndState) {
  const QSize sizes[] = {{320, 480}, {390, 844}, {844, 390}, {1280, 800}};
  int looks = 0;
  for (const std::string& state : Conversation::states())
    for (const QSize size : sizes)
      for (const bool rightToLeft : {false, true})
        for (const double scale : {1.0, 2.0}) {
          Conversation talk({.size = size,
                             .dark = ++looks % 2 == 0,
                             .rightToLeft = rightToLeft,
                             .textScale = scale});
          talk.bring(state);
          (void)talk.scene->picture();  // lays out what is new
          const std::string where = state + " at " + std::to_string(size.width()) + "x" +
                                    std::to_string(size.height()) +
                                    (rightToLeft ? " from right to left" : "") + " scale " +
                                    std::to_string(static_cast<int>(scale));
          EXPECT_THAT(layoutFaults(*talk.scene->window()), IsEmpty()) << where;
          if (state == "thinking") continue;  // it passes while the keys are pressed
          EXPECT_THAT(reachFaults(*talk.scene->window()), IsEmpty()) << where;
        }
}

TEST(Surface, AnnouncesEachStateThatItEnters) {
  // A screen reader reads an alert that appears, and the item that gets the focus.
  const std::map<std::string, std::string> words{
      {"rest", "field: Where would you like to go?"},
      {"typing", "field: Where would you like to go?"},
      {"listening", "alert: Listening…"},
      {"thinking", "alert: Thinking…"},
      {"answer", "alert: Navigating to: Cart"},
      {"spoken answer", "alert: Navigating to: Cart"},
      {"heard", "alert: I did not understand that"},
      {"unclear", "alert: Did I hear that right?"},
      {"permission", "alert: The microphone is switched off for this app"},
      {"microphone", "alert: No microphone can be used"},
      {"choices", "dialog: Did you mean …"}};
  for (const std::string& state : Conversation::states()) {
    Conversation talk({});
    talk.bring(state);
    const std::vector<std::string> page = spokenPage(*talk.scene->window());
    EXPECT_THAT(page, Contains(words.at(state))) << state;
    const auto isAlert = [](const std::string& line) { return line.starts_with("alert: "); };
    EXPECT_EQ(std::ranges::count_if(page, isAlert), words.at(state).starts_with("alert: ") ? 1 : 0)
        << state;
  }
}

TEST(Surface, OffersExamplesUntilTheFirstCommand) {
  Conversation talk({});
  talk.scene->tap("phrase1");
  talk.await("choices");
  talk.awaitFocus("row0");
  QTest::keyClick(talk.scene->window(), Qt::Key_Escape);
  talk.await("rest");
  EXPECT_EQ(talk.scene->find("phrase0"), nullptr);
  EXPECT_THAT(strings(talk.scene->get("felt")), Contains("select"));
}

TEST(Surface, ShowsTheWordsWhileTheyAreSpokenAndWhileItThinks) {
  Conversation talk({});
  talk.listen();
  talk.hear("what is in");
  EXPECT_EQ(talk.scene->item("liveWords")->property("text"), "what is in");
  EXPECT_EQ(talk.scene->get("silences"), 1) << "what is read aloud ends when the microphone opens";
  talk.application.standIns.recognizer->lateResult = {
      .text = "what is in my shopping cart", .segments = {{"all", 0.9}}, .isFinal = true};
  talk.scene->tap("stopListening");
  EXPECT_EQ(talk.mode(), "thinking");
  EXPECT_EQ(talk.scene->item("liveWords")->property("text"), "what is in");
  talk.await("answer");
  EXPECT_EQ(talk.scene->item("answer")->property("text"), "Navigating to: Cart");
  EXPECT_EQ(talk.scene->item("detail")->property("text"),
            QStringLiteral("You said: “what is in my shopping cart”"));
  EXPECT_THAT(strings(talk.scene->get("felt")), ElementsAre("start", "stop", "success"));
  EXPECT_THAT(strings(talk.scene->get("replies")), ElementsAre("Navigating to: Cart"));
}

TEST(Surface, LetsWhatWasHeardBeChangedAndSent) {
  Conversation talk({});
  talk.bring("heard");
  EXPECT_EQ(talk.typed(), "what is the weather on mars");
  talk.scene->tap("commandField");
  QTest::keyClick(talk.scene->window(), Qt::Key_A, Qt::ControlModifier);
  for (const char letter : std::string("open my cart"))
    QTest::keyClick(talk.scene->window(), letter);
  QTest::keyClick(talk.scene->window(), Qt::Key_Return);
  talk.await("answer");
  EXPECT_EQ(talk.assistant->lastOutcome().screenId, "cart");
}

TEST(Surface, FollowsTheKeyboardThroughASpokenCommand) {
  Conversation talk({});
  talk.application.standIns.recognizer->lateResult = {
      .text = "open my cart", .segments = {{"all", 0.9}}, .isFinal = true};
  talk.scene->item("speak")->forceActiveFocus(Qt::TabFocusReason);
  QTest::keyClick(talk.scene->window(), Qt::Key_Space);
  talk.awaitFocus("stopListening");
  QTest::keyClick(talk.scene->window(), Qt::Key_Escape);
  talk.await("rest");
  EXPECT_TRUE(talk.assistant->history().isEmpty()) << "what is given up is not routed";
  talk.awaitFocus("speak");
  QTest::keyClick(talk.scene->window(), Qt::Key_Space);
  talk.awaitFocus("stopListening");
  QTest::keyClick(talk.scene->window(), Qt::Key_Return);
  talk.await("answer");
  talk.awaitFocus("speak");
}

TEST(Surface, AsksBackAboutWhatWasHeardTooBadly) {
  Conversation talk({});
  talk.bring("unclear");
  EXPECT_EQ(talk.scene->item("answer")->property("text"), "Did I hear that right?");
  EXPECT_THAT(strings(talk.scene->get("replies")), ElementsAre("Did I hear that right?"));
  EXPECT_EQ(talk.typed(), "what is in my shopping card");
  EXPECT_EQ(talk.scene->item("phrase0")->property("text"), "what is in my shopping cart");
  talk.scene->tap("phrase0");
  talk.await("answer");
  EXPECT_EQ(talk.assistant->lastOutcome().screenId, "cart");
}

TEST(Surface, RecallsEarlierCommandsAndSuggestsWhileTyping) {
  Conversation talk({});
  for (const char* command : {"open my cart", "opening hours"}) {
    talk.assistant->route(command);
    talk.await("answer");
  }
  QMetaObject::invokeMethod(talk.surface, "edit", Q_ARG(QString, QString()));
  talk.await("typing");
  EXPECT_EQ(talk.scene->item("phrase0")->property("text"), "opening hours");
  QTest::keyClick(talk.scene->window(), Qt::Key_Up);
  QTest::keyClick(talk.scene->window(), Qt::Key_Up);
  EXPECT_EQ(talk.typed(), "open my cart");
  QTest::keyClick(talk.scene->window(), Qt::Key_Down);
  EXPECT_EQ(talk.typed(), "opening hours");
  QTest::keyClick(talk.scene->window(), Qt::Key_Escape);
  EXPECT_EQ(talk.typed(), QString());
  for (const char letter : std::string("shoping")) QTest::keyClick(talk.scene->window(), letter);
  EXPECT_EQ(talk.scene->item("phrase0")->property("text"), "what is in my shopping cart");
}

TEST(Surface, HoldsTheFocusInTheChoicesAndGivesItBack) {
  Conversation talk({.size = {390, 844}});
  QMetaObject::invokeMethod(talk.surface, "edit", Q_ARG(QString, QStringLiteral("order")));
  QTest::keyClick(talk.scene->window(), Qt::Key_Return);
  talk.await("choices");
  EXPECT_TRUE(talk.surface->property("modal").toBool());
  talk.awaitFocus("row0");
  QTest::keyClick(talk.scene->window(), Qt::Key_Down);
  QTest::keyClick(talk.scene->window(), Qt::Key_Return);
  talk.awaitFocus("commandField");
  EXPECT_FALSE(talk.surface->property("modal").toBool());
  EXPECT_EQ(talk.assistant->choices().size(), 0);
}

TEST(Surface, SaysWhatToDoWithoutAMicrophone) {
  Conversation talk({});
  talk.bring("permission");
  talk.application.standIns.permissions->microphone = true;
  talk.scene->tap("retry");
  talk.await("listening");

  Conversation other({});
  other.bring("microphone");
  EXPECT_EQ(other.scene->item("detail")->property("text"), "No mic input");
  other.scene->tap("type");
  other.await("typing");
}

TEST(Surface, StaysAboveTheKeyboardAndWithinTheSafeAreas) {
  const Conversation talk({.more = "safeBottom: 34; safeLeft: 50; keyboardHeight: 300"});
  const QRectF field = talk.scene->place("field");
  EXPECT_EQ(field.bottom(), 844 - 300 - 12);
  EXPECT_GE(field.left(), 62);
  const Conversation resting({.more = "safeBottom: 34"});
  EXPECT_EQ(resting.scene->place("field").bottom(), 844 - 34 - 12);
  EXPECT_EQ(resting.surface->property("restHeight").toDouble(),
            844 - resting.scene->place("notice").top() + 12);
}

TEST(Surface, IsAPillUntilTheUserWantsToType) {
  Conversation talk({.more = "compact: true"});
  EXPECT_EQ(talk.scene->find("commandField"), nullptr);
  talk.scene->tap("typeInstead");
  EXPECT_TRUE(QTest::qWaitFor([&] { return talk.scene->find("commandField") != nullptr; }));
  QTest::keyClick(talk.scene->window(), Qt::Key_Escape);
  talk.scene->tap("pill");
  talk.await("listening");
}

TEST(Wave, FollowsLoudnessAsEarsDo) {
  EXPECT_EQ(loudness(0), 0);
  EXPECT_EQ(loudness(0.001), 0) << "60 dB below full scale is silence";
  EXPECT_EQ(loudness(1), 1);
  EXPECT_NEAR(loudness(0.0316), 0.5, 0.01) << "30 dB below is the middle";
  EXPECT_GT(follow(0, 1, 0.1), 0.9) << "it rises within a tenth of a second";
  EXPECT_GT(follow(1, 0, 0.1), 0.5) << "and falls slowly";
  double shown = 0, before = 0;
  for (int frame = 0; frame < 60; ++frame, before = shown) {
    shown = follow(shown, frame % 2 == 0 ? 1 : 0, 1.0 / 60);
    if (frame <= 20) continue;
    EXPECT_LT(std::abs(shown - before), 0.35) << "a jumping level does not jump";
  }
}

TEST(Suggestions, AreTheExamplesNearestToWhatWasTyped) {
  const std::vector<CommandExample> examples{{"open my cart", "Cart"},
                                             {"what is in my shopping cart", "Cart"},
                                             {"track my order", "Track"},
                                             {"mein Paket verfolgen", "Track"},
                                             {"פתח את העגלה", "Cart"}};
  const struct {
    const char* typed;
    std::vector<std::string> expected;
  } rows[] = {
      {"cart", {"open my cart"}},
      {"trak", {"track my order"}},
      {"PAKET", {"mein Paket verfolgen"}},
      {"העגל", {"פתח את העגלה"}},
      {"open track", {"track my order", "open my cart"}},
      {"", {}},
      {"xylophone", {}},
  };
  for (const auto& row : rows)
    EXPECT_EQ(closestExamples(row.typed, examples, 3), row.expected) << row.typed;
  EXPECT_THAT(closestExamples("open track", examples, 1), ElementsAre("track my order"));
}

}  // namespace
}  // namespace zelvora
