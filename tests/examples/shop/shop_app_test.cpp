#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <ZelvoraSDK/base/text.h>
#include <ZelvoraSDK/testing/speech.h>
#include <ZelvoraSDK/ui/values.h>
#include <examples/shop/app/tour.h>
#include <tests/examples/shop/shop_app.h>
#include <tests/support/sound_files.h>
#include <tests/support/synthetic_voice.h>

namespace zelvora::shop {
namespace {

using ::testing::ElementsAre;
using testing::Journal;
using ::testing::StartsWith;

TEST_F(ShopApp, OpensTheScreensAskedForByTyping) {
  EXPECT_EQ(screen(), "main");
  type("show me running shoes");
  EXPECT_EQ(screen(), "results");
  EXPECT_EQ(parameter("category"), "shoes");
  EXPECT_EQ(item("answerBadge").property("name"), "badge_success");

  type("show me the size guide");
  EXPECT_EQ(presentation(), "fit_sheet");
  EXPECT_EQ(screen(), "results") << "a presentation stands over the screen";

  QMetaObject::invokeMethod(&app_.shop(), "startAgain");
  EXPECT_EQ(presentation(), "");
  type("who won the football match");
  EXPECT_EQ(screen(), "main");
  EXPECT_EQ(item("answerBadge").property("name"), "badge_failure");
}

TEST_F(ShopApp, OpensTheScreenAskedForAloud) {
  const auto clip = folder_.path() / "command.caf";
  testing::writeRecording(clip, {16000, 1}, testing::asFloats(testing::spoken("track my order")));
  tap(item("speak"));
  await([&] { return assistant().state() == ZelvoraMicState::Listening; });
  const auto player = sound_.play(clip, "mic");
  await([&] { return assistant().audioLevel() > 0.05; });
  // Nobody taps again: the silence after the command ends it.
  await([&] { return assistant().state() == ZelvoraMicState::Idle; });
  EXPECT_THAT(states_, ElementsAre(ZelvoraMicState::Listening, ZelvoraMicState::Processing,
                                   ZelvoraMicState::Idle));
  EXPECT_EQ(screen(), "parcel") << assistant().say().toStdString();
  EXPECT_EQ(parameter("order"), "latest");
}

TEST_F(ShopApp, SaysThatThereIsNoMicrophone) {
  sound_.unplugMicrophone();
  tap(item("speak"));
  await([&] { return app_.shop().property("mode") == QStringLiteral("microphone"); });
  // And why, in the words of the sound server.
  EXPECT_THAT(item("detail").property("text").toString().toStdString(),
              StartsWith("No mic input ("));
  EXPECT_TRUE(states_.empty());
}

TEST_F(ShopApp, RanksAPickHigherTheNextTime) {
  const auto offered = [this] {
    std::vector<std::string> tasks;
    for (const QVariant& choice : assistant().choices())
      tasks.push_back(choice.value<ChoiceValue>().taskId().toStdString());
    return tasks;
  };
  type("orders");
  const auto first = offered();
  ASSERT_THAT(first, ElementsAre("orders", "track_order", "reorder", "checkout"));
  await([&] { return findBelow(*app_.window().contentItem(), QStringLiteral("row2")); });
  tap(item("row2"));
  EXPECT_EQ(screen(), "basket");
  EXPECT_TRUE(assistant().choices().isEmpty());

  // The pick is counted in the background, usually before the next command arrives.
  for (int i = 0; i < 50 && (i == 0 || offered() == first); ++i) {
    QMetaObject::invokeMethod(&assistant(), "dismissChoices");
    type("orders");
  }
  EXPECT_THAT(offered(), ElementsAre("orders", "reorder", "track_order", "checkout"));
}

TEST_F(ShopApp, HasAScreenOrAPresentationForEachTaskOfItsSpec) {
  const std::string spec = readFile(ShopOptions::ownBundle() / "shop.json");
  const auto tasks = QJsonDocument::fromJson(QByteArray::fromStdString(spec))["tasks"].toArray();
  ASSERT_FALSE(tasks.isEmpty());
  for (const QJsonValue& task : tasks) {
    const std::string name = task["id"].toString().toStdString();
    const QJsonValue action = task["action"];
    if (action["type"] == QLatin1String("present")) {
      QMetaObject::invokeMethod(&app_.shop(), "present", Q_ARG(QString, action["id"].toString()));
      EXPECT_TRUE(item("presented").property("item").value<QObject*>()) << name;
      EXPECT_GT(item("presented").height(), 100) << name;
      QMetaObject::invokeMethod(&app_.shop(), "startAgain");
      continue;
    }
    const QString screenId = action["screenId"].toString(task["screenId"].toString());
    QMetaObject::invokeMethod(&app_.shop(), "open", Q_ARG(QString, screenId),
                              Q_ARG(QVariant, QVariantMap()));
    EXPECT_EQ(screen(), screenId.toStdString()) << name;
  }
}

TEST_F(ShopApp, PaintsATourByDayAndByNight) {
  paintTour(app_, folder_.path() / "tour");
  std::set<std::string> pictures;
  for (const auto& entry : std::filesystem::directory_iterator(folder_.path() / "tour"))
    pictures.insert(readFile(entry.path()));
  // Only the two pictures of one screen, with and without the answer, may be alike.
  EXPECT_GT(pictures.size(), 50U);
}

TEST(ReplySpeaker, SaysAnswersUnlessItIsMuted) {
  const auto journal = std::make_shared<Journal>();
  ReplySpeaker speaker(std::make_shared<testing::StandInSynthesizers>(journal), "en-US");
  speaker.say(QStringLiteral("Here is your cart."));
  EXPECT_THAT(journal->take(), ::testing::Contains("say en-US 'Here is your cart.'"));
  speaker.setMuted(true);
  speaker.say(QStringLiteral("Not this."));
  EXPECT_THAT(journal->take(), ::testing::IsEmpty());
}

}  // namespace
}  // namespace zelvora::shop
