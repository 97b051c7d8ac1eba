#include <tests/ui/conversation.h>

#include <QtTest/QTest>
#include <stdexcept>

namespace zelvora {
namespace {

/// Three tasks that "order" may mean, and a few others.
constexpr char kSpec[] = R"({"app":{"id":"shop","default_locale":"en-US"},
  "routing":{"thresholds":{"execute_min_score":6.0,"execute_min_conf":0.75,"choices_min_score":3.0,
      "choices_min_conf":0.45,"close_to_second_delta":2.0,"max_choices":4},
    "weights":{"keyword_phrase_hit":6,"keyword_single_hit":3,"example_token_hit":0.6,
      "example_token_cap":3},"stopwords":["please","my","the"]},
  "learning":{"enabled":true,"mode":"local",
    "boost":{"recent_choice_bonus":0,"repeat_choice_bonus":0,"max_total_bonus":0},
    "telemetry":{"enabled":false,"endpoint":"","send_text":false}},
  "tasks":[
    {"id":"cart","title":"Cart","screenId":"cart","keywords":["cart","open cart","shopping cart"],
     "examples":["open my cart","what is in my shopping cart"]},
    {"id":"orders","title":"My orders","screenId":"orders","keywords":["order","order history"],
     "examples":["show my orders"]},
    {"id":"track","title":"Track an order","screenId":"track","keywords":["order","track order"],
     "examples":["track my order"]},
    {"id":"again","title":"Order the same things again as the last time","screenId":"again",
     "keywords":["order","order again"],"examples":["order the same again"]},
    {"id":"hours","title":"Opening hours","screenId":"hours","keywords":["opening hours"],
     "examples":["when do you open on Sunday"]}]})";

QByteArray pageOf(const ConversationLook& look) {
  return QByteArray("Rectangle {\nid: page\ncolor: ZelvoraTheme.background\n") +
         "ZelvoraTheme.dark: " + (look.dark ? "true" : "false") +
         "\nZelvoraTheme.reducedMotion: true\nZelvoraTheme.textScale: " +
         QByteArray::number(look.textScale) +
         "\nLayoutMirroring.enabled: " + (look.rightToLeft ? "true" : "false") +
         "\nLayoutMirroring.childrenInherit: true\n"
         "property alias assistant: assistant\nproperty alias surface: surface\n"
         "property var felt: []\nproperty var replies: []\nproperty int silences\n"
         "ZelvoraAssistant { id: assistant; bundle: 'apps/shop'; spec: 'shop' }\n"
         "ZelvoraCommandSurface { id: surface; assistant: page.assistant\n"
         "onHaptic: kind => page.felt.push(kind); onReply: text => page.replies.push(text)\n"
         "onSilence: ++page.silences\n" +
         look.more + "\n} }";
}

}  // namespace

Conversation::Conversation(const ConversationLook& look)
    : application(kSpec),
      scene(std::make_unique<Scene>(pageOf(look), look.size,
                                    [this](QQmlEngine& engine) { application.provideTo(engine); })),
      assistant(scene->get("assistant").value<ZelvoraAssistant*>()),
      surface(scene->get("surface").value<QQuickItem*>()) {
  assistant->setTapClock(tapsApart());
}

Conversation::~Conversation() { scene.reset(); }

const std::vector<std::string>& Conversation::states() {
  static const std::vector<std::string> all{"rest",       "typing",        "listening", "thinking",
                                            "answer",     "spoken answer", "heard",     "unclear",
                                            "permission", "microphone",    "choices"};
  return all;
}

std::string Conversation::mode() const {
  return surface->property("mode").toString().toStdString();
}

QString Conversation::typed() const {
  return scene->root()->findChild<QQuickItem*>("commandField")->property("text").toString();
}

void Conversation::await(const std::string& wanted) {
  if (!QTest::qWaitFor([&] { return mode() == wanted; }, 10000))
    throw std::runtime_error("the surface shows " + mode() + " and not " + wanted);
  (void)scene->picture();  // lays out what is new
}

void Conversation::awaitFocus(const char* objectName) {
  const auto focused = [&] {
    const QQuickItem* focus = scene->window()->activeFocusItem();
    return focus ? focus->objectName() : QString();
  };
  if (!QTest::qWaitFor([&] { return focused() == QLatin1String(objectName); }, 5000))
    throw std::runtime_error("the focus is in " + focused().toStdString());
}

void Conversation::listen() {
  assistant->tapMic();
  await("listening");
}

void Conversation::hear(const std::string& partial) {
  const QString text = QString::fromStdString(partial);
  application.standIns.recognizer->say({.text = partial});
  if (!QTest::qWaitFor([&] { return assistant->partialText() == text; }, 10000))
    throw std::runtime_error("not heard: " + partial);
}

void Conversation::bring(const std::string& state) {
  auto& standIns = application.standIns;
  const auto speak = [&](const std::string& words, float confidence = 0.9F) {
    standIns.recognizer->lateResult = {
        .text = words, .segments = {{words, confidence}}, .isFinal = true};
    listen();
    assistant->stop();
  };
  if (state == "typing") {
    QMetaObject::invokeMethod(surface, "edit", Q_ARG(QString, QStringLiteral("show my ord")));
  } else if (state == "listening") {
    listen();
    standIns.microphone->play(std::vector<float>(1024, 0.3F));
    hear("what is in my shopping");
  } else if (state == "thinking") {
    assistant->route(QStringLiteral("what is in my shopping cart"));
  } else if (state == "answer") {
    assistant->route(QStringLiteral("open my cart"));
  } else if (state == "spoken answer") {
    speak("open my cart");
  } else if (state == "heard") {
    speak("what is the weather on mars");
  } else if (state == "unclear") {
    speak("what is in my shopping card", 0.4F);
  } else if (state == "permission") {
    standIns.permissions->microphone = false;
    QMetaObject::invokeMethod(surface, "listen");
  } else if (state == "microphone") {
    standIns.microphone->startFailure = Error("Test", 3, "No mic input");
    QMetaObject::invokeMethod(surface, "listen");
  } else if (state == "choices") {
    assistant->route(QStringLiteral("order"));
  }
  await(state == "spoken answer" ? "answer" : state == "unclear" ? "heard" : state);
  if (state == "choices") awaitFocus("row0");  // the sheet has opened
}

}  // namespace zelvora
