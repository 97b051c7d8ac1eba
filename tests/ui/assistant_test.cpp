#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtTest/QTest>
#include <algorithm>

#include <ZelvoraSDK/ui/zelvora_assistant.h>
#include <tests/facade/small_spec.h>
#include <tests/ui/application.h>

namespace zelvora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// An assistant made by QML on a platform under the test's control, and what it reports.
class Assistant : public ::testing::Test {
 protected:
  Assistant() { application_.provideTo(engine_); }

  ZelvoraAssistant& make() {
    QQmlComponent component(&engine_);
    component.setData(
        "import Zelvora\n"
        "ZelvoraAssistant { bundle: 'apps/shop'; spec: 'shop' }",
        {});
    assistant_.reset(qobject_cast<ZelvoraAssistant*>(component.create()));
    if (!assistant_) throw std::runtime_error(qPrintable(component.errorString()));
    assistant_->setTapClock(tapsApart());
    listenTo(*assistant_);
    return *assistant_;
  }

  void listenTo(ZelvoraAssistant& assistant) {
    QObject::connect(&assistant, &ZelvoraAssistant::stateChanged,
                     [this, &assistant] { states_.push_back(assistant.state()); });
    QObject::connect(&assistant, &ZelvoraAssistant::execute,
                     [this](const QString& screenId, const QVariantMap& params,
                            const QString& say) { note("execute", screenId, params, say); });
    QObject::connect(&assistant, &ZelvoraAssistant::present,
                     [this](const QString& presentationId, const QVariantMap& params,
                            const QString& say) { note("present", presentationId, params, say); });
    QObject::connect(&assistant, &ZelvoraAssistant::unsupported,
                     [this](const QString& say) { note("unsupported", {}, {}, say); });
  }

  void note(const char* kind, const QString& target, const QVariantMap& params,
            const QString& say) {
    QString line = QLatin1String(kind) + QLatin1Char(' ') + target;
    for (auto at = params.begin(); at != params.end(); ++at)
      line += QStringLiteral(" %1=%2").arg(at.key(), at.value().toString());
    told_.push_back((line + QStringLiteral(": ") + say).toStdString());
  }

  /// Runs the event loop until `condition()`.
  template <class Condition>
  static void await(Condition condition) {
    ASSERT_TRUE(QTest::qWaitFor(condition, 20000));
  }
  void beginListening(ZelvoraAssistant& assistant) {
    assistant.tapMic();
    await([&] { return assistant.state() == ZelvoraMicState::Listening; });
  }

  Application application_{testing::smallSpec()};
  testing::SpeechStandIns& standIns_ = application_.standIns;
  QQmlEngine engine_;
  std::unique_ptr<ZelvoraAssistant> assistant_;
  std::vector<int> states_;
  std::vector<std::string> told_;
};

TEST_F(Assistant, RoutesTypedCommandsAndSignalsEachOutcome) {
  ZelvoraAssistant& assistant = make();
  EXPECT_EQ(application_.asked, "apps/shop shop");
  assistant.route(QStringLiteral("open my cart"));
  EXPECT_EQ(assistant.state(), ZelvoraMicState::Processing);
  await([&] { return told_.size() == 1; });
  EXPECT_EQ(assistant.lastOutcome().kind, QStringLiteral("execute"));
  EXPECT_EQ(assistant.lastOutcome().taskId, QStringLiteral("cart"));
  EXPECT_EQ(assistant.say(), QStringLiteral("Navigating to: Cart"));
  assistant.route(QStringLiteral("show the spring promotion"));
  await([&] { return told_.size() == 2; });
  assistant.route(QStringLiteral(" "));
  await([&] { return told_.size() == 3; });
  EXPECT_THAT(told_, ElementsAre("execute cart_screen tab=items: Navigating to: Cart",
                                 "present promo_sheet: Navigating to: Promotion",
                                 "unsupported : Type or say something 🙂"));
  EXPECT_THAT(states_, ElementsAre(2, 0, 2, 0, 2, 0));
}

TEST_F(Assistant, OpensTheScreenOfAPickAndCountsIt) {
  ZelvoraAssistant& assistant = make();
  assistant.choose(ChoiceValue(ZelvoraChoice{
      .taskId = "cart", .title = "Cart", .screenId = "cart_screen", .params = Params{{"a", "b"}}}));
  EXPECT_THAT(told_, ElementsAre("execute cart_screen a=b: "));
  assistant.choose(ChoiceValue(ZelvoraChoice{.taskId = "cart", .title = "Cart"}));
  EXPECT_EQ(told_.size(), 1U) << "a choice without a screen opens none";
  await([&] {
    return std::ranges::any_of(standIns_.journal->take(),
                               [](const auto& line) { return line.starts_with("counted "); });
  });
}

TEST_F(Assistant, HearsACommandAndShowsItsProgress) {
  ZelvoraAssistant& assistant = make();
  standIns_.recognizer->lateResult = {
      .text = "open my cart", .segments = {{"open my cart", 0.9}}, .isFinal = true};
  beginListening(assistant);
  standIns_.microphone->play(std::vector<float>(1024, 0.5F));
  await([&] { return assistant.audioLevel() == 0.5; });
  standIns_.recognizer->say({.text = "open"});
  await([&] { return assistant.partialText() == QStringLiteral("open"); });
  assistant.tapMic();
  EXPECT_EQ(assistant.state(), ZelvoraMicState::Processing);
  EXPECT_EQ(assistant.audioLevel(), 0);
  assistant.tapMic();  // does nothing while an outcome is awaited
  await([&] { return assistant.state() == ZelvoraMicState::Idle; });
  EXPECT_THAT(told_, ElementsAre("execute cart_screen tab=items: Navigating to: Cart"));
  EXPECT_THAT(states_, ElementsAre(1, 2, 0));

  // The last command's words are gone when the next one begins.
  beginListening(assistant);
  EXPECT_EQ(assistant.partialText(), QString());
}

TEST_F(Assistant, RoutesOnceACaptureThatEndsOnItsOwn) {
  ZelvoraAssistant& assistant = make();
  beginListening(assistant);
  standIns_.recognizer->say(
      {.text = "open my cart", .segments = {{"open my cart", 0.9}}, .isFinal = true});
  await([&] { return !told_.empty(); });
  EXPECT_EQ(assistant.state(), ZelvoraMicState::Idle);
  assistant.stop();  // does nothing: it is not listening
  assistant.route(QStringLiteral("show the spring promotion"));
  await([&] { return told_.size() > 1; });
  EXPECT_THAT(told_, ElementsAre("execute cart_screen tab=items: Navigating to: Cart",
                                 "present promo_sheet: Navigating to: Promotion"));
}

TEST_F(Assistant, RoutesNothingOfWhatIsCutShort) {
  ZelvoraAssistant& assistant = make();
  beginListening(assistant);
  standIns_.recognizer->say({.text = "open my cart"});
  await([&] { return !assistant.partialText().isEmpty(); });
  standIns_.microphone->vanish(Error("Test", 7, "unplugged"));
  await([&] { return assistant.state() == ZelvoraMicState::Idle; });
  EXPECT_EQ(assistant.error(), QStringLiteral("unplugged"));
  EXPECT_TRUE(assistant.microphoneMissing());

  beginListening(assistant);
  EXPECT_FALSE(assistant.microphoneMissing());
  EXPECT_EQ(assistant.error(), QString());
  assistant.cancel();
  EXPECT_EQ(assistant.state(), ZelvoraMicState::Idle);
  EXPECT_EQ(assistant.error(), QString());
  assistant.route(QStringLiteral("open my cart"));
  await([&] { return !told_.empty(); });
  EXPECT_THAT(told_, ElementsAre("execute cart_screen tab=items: Navigating to: Cart"));
}

TEST_F(Assistant, ShowsWhatItHeardTooBadlyToRoute) {
  ZelvoraAssistant& assistant = make();
  standIns_.recognizer->lateResult = {
      .text = "open my card", .segments = {{"open my card", 0.4}}, .isFinal = true};
  beginListening(assistant);
  assistant.stop();
  await([&] { return !told_.empty(); });
  EXPECT_THAT(told_, ElementsAre("unsupported : No speech detected"));
  EXPECT_EQ(assistant.heardText(), QStringLiteral("open my card"));
  EXPECT_TRUE(assistant.heardUnclearly());
  EXPECT_THAT(assistant.history(), IsEmpty()) << "it was no command";
}

TEST_F(Assistant, TreatsADoubleTapAsOne) {
  ZelvoraAssistant& assistant = make();
  assistant.setTapClock([] { return Seconds{100}; });
  assistant.tapMic();
  assistant.tapMic();
  EXPECT_TRUE(assistant.asking());
  await([&] { return assistant.state() == ZelvoraMicState::Listening; });
  assistant.tapMic();
  EXPECT_EQ(assistant.state(), ZelvoraMicState::Listening);
}

TEST_F(Assistant, ReportsThatTheMicrophoneWasRefused) {
  standIns_.permissions->microphone = false;
  ZelvoraAssistant& assistant = make();
  assistant.tapMic();
  await([&] { return !told_.empty(); });
  EXPECT_THAT(told_, ElementsAre("unsupported : Microphone permission denied"));
  EXPECT_TRUE(assistant.permissionDenied());
  EXPECT_THAT(states_, IsEmpty());

  standIns_.permissions->microphone = true;
  beginListening(assistant);
  EXPECT_FALSE(assistant.permissionDenied());
}

TEST_F(Assistant, StaysIdleWithoutAMicrophoneOrWhenSpeechIsDisabled) {
  standIns_.microphone->startFailure = Error("Test", 3, "the microphone is taken");
  ZelvoraAssistant& assistant = make();
  assistant.tapMic();
  await([&] { return !assistant.error().isEmpty(); });
  EXPECT_EQ(assistant.error(), QStringLiteral("the microphone is taken"));
  standIns_.microphone->startFailure.reset();
  beginListening(assistant);

  application_.bundle->strings["ZelvoraSTTMode"] = "disabled";
  ZelvoraAssistant& mute = make();
  mute.tapMic();
  await([&] { return !mute.error().isEmpty(); });
  EXPECT_EQ(mute.error(), QStringLiteral("Speech recognition is switched off"));
  mute.route(QStringLiteral("open my cart"));
  await([&] { return !told_.empty(); });
  EXPECT_EQ(mute.state(), ZelvoraMicState::Idle);
}

TEST_F(Assistant, IsWiredToAButtonInTenLinesOfQml) {
  QQmlComponent component(
      &engine_, QUrl::fromLocalFile(QStringLiteral(ZELVORA_SOURCE_DIR "/examples/mic/Main.qml")));
  const std::unique_ptr<QObject> window(component.create());
  ASSERT_TRUE(window) << qPrintable(component.errorString());
  standIns_.recognizer->lateResult = {
      .text = "open my cart", .segments = {{"open my cart", 0.9}}, .isFinal = true};
  auto* assistant = window->findChild<ZelvoraAssistant*>();
  assistant->setTapClock(tapsApart());
  auto* button = window->findChild<QObject*>(QStringLiteral("button"));
  QMetaObject::invokeMethod(button, "clicked");
  await([&] { return assistant->state() == ZelvoraMicState::Listening; });
  QMetaObject::invokeMethod(button, "clicked");
  await([&] { return assistant->state() == ZelvoraMicState::Idle; });
  EXPECT_EQ(window->findChild<QObject*>(QStringLiteral("screen"))->property("text"),
            QStringLiteral("cart_screen"));
}

TEST_F(Assistant, KeepsWhatWasHeardAndForgetsItForATypedCommand) {
  ZelvoraAssistant& assistant = make();
  standIns_.recognizer->lateResult = {
      .text = "open my cart", .segments = {{"open my cart", 0.9}}, .isFinal = true};
  std::vector<std::string> events;
  QObject::connect(&assistant, &ZelvoraAssistant::auditEvent, [&](const AuditValue& event) {
    events.push_back(event.kind.toStdString() + " " + std::to_string(event.transcriptLength));
  });
  beginListening(assistant);
  assistant.stop();
  await([&] { return assistant.state() == ZelvoraMicState::Idle; });
  EXPECT_EQ(assistant.heardText(), QStringLiteral("open my cart"));
  EXPECT_THAT(events, ElementsAre("localSTTUsed 12"));
  assistant.route(QStringLiteral("show the spring promotion "));
  EXPECT_EQ(assistant.heardText(), QString());
  assistant.route(QStringLiteral("open my cart"));
  await([&] { return told_.size() == 3; });
  EXPECT_EQ(assistant.history(), (QStringList{"open my cart", "show the spring promotion"}));
}

TEST_F(Assistant, OffersTheSpecsExamplesAndTheNearestOfThem) {
  const ZelvoraAssistant& assistant = make();
  EXPECT_EQ(assistant.examples(),
            (QStringList{"open my cart", "show my orders", "show the spring promotion"}));
  EXPECT_EQ(assistant.suggest("sping promo", 2), QStringList{"show the spring promotion"});
  EXPECT_EQ(assistant.suggest("the moon", 0), QStringList());
}

TEST_F(Assistant, SwitchesToAnotherSpecWhenItIsSet) {
  ZelvoraAssistant& assistant = make();
  application_.bundle->resources["other.json"] =
      application_.folder.write("other.json", testing::smallSpec());
  assistant.route(QStringLiteral("open my cart"));
  assistant.setBundle(QStringLiteral("apps/other"));
  assistant.setSpec(QStringLiteral("other"));
  await([&] { return application_.asked == "apps/other other"; });
  EXPECT_EQ(assistant.state(), ZelvoraMicState::Idle) << "what was under way is given up";
  told_.clear();
  assistant.route(QStringLiteral("show the spring promotion"));
  await([&] { return !told_.empty(); });
  EXPECT_THAT(told_, ElementsAre("present promo_sheet: Navigating to: Promotion"));
}

TEST(AssistantInAPreview, SaysThatItHasNoPlatform) {
  QQmlEngine engine;
  QQmlComponent component(&engine);
  component.setData("import Zelvora\nZelvoraAssistant { bundle: 'apps/shop'; spec: 'shop' }", {});
  const std::unique_ptr<ZelvoraAssistant> assistant(
      qobject_cast<ZelvoraAssistant*>(component.create()));
  ASSERT_TRUE(assistant) << qPrintable(component.errorString());
  EXPECT_EQ(assistant->error(),
            QStringLiteral("ZelvoraAssistant: the QML engine was given no platform provider"));
  assistant->tapMic();
  assistant->route(QStringLiteral("open my cart"));
  EXPECT_EQ(assistant->state(), ZelvoraMicState::Idle);
}

TEST_F(Assistant, TakesAFacadeFromTheProgramAndLetsGoOfIt) {
  const auto facade =
      std::make_shared<Zelvora>(application_.platform(), Zelvora::SpecResource{"shop"});
  assistant_ = std::make_unique<ZelvoraAssistant>();
  listenTo(*assistant_);
  assistant_->hold(facade);
  EXPECT_DEATH(assistant_->hold(facade),
               "Fatal error: ZelvoraAssistant: it holds a façade already");
  facade->routeAndCallback("open my cart");
  await([&] { return told_.size() == 1; });
  assistant_.reset();
  EXPECT_FALSE(facade->onResult);
}

}  // namespace
}  // namespace zelvora
