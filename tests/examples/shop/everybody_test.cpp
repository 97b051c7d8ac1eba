// The shop for a small and a large screen, in every language, by keyboard, by ear and by voice.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QJSValue>
#include <QQmlComponent>
#include <algorithm>
#include <array>
#include <cmath>
#include <iostream>
#include <random>

#include <ZelvoraSDK/ui/zelvora_theme.h>
#include <tests/examples/shop/shop_app.h>
#include <tests/support/sound_files.h>
#include <tests/support/synthetic_voice.h>
#include <tests/ui/geometry.h>

namespace zelvora::shop {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// How the shop is shown.
struct Look {
  QSize size;
  const char* language = "en";
  double scale = 1;
  bool dark = false;

  [[nodiscard]] std::string name() const {
    return std::to_string(size.width()) + "x" + std::to_string(size.height()) + " " + language +
           " scale " + std::to_string(static_cast<int>(scale)) + (dark ? " dark" : " light");
  }
};

/// Every size with every language and both scales of text. What is light in an upright window is
/// dark in a wide one.
std::vector<Look> looks(const std::vector<const char*>& languages) {
  std::vector<Look> all;
  for (const QSize size : {QSize(320, 480), QSize(390, 844), QSize(844, 390), QSize(1280, 800)})
    for (const char* language : languages)
      for (const double scale : {1.0, 2.0})
        all.push_back({size, language, scale, (scale > 1) == (size.width() > size.height())});
  return all;
}

class Everybody : public ShopApp {
 protected:
  /// An object of the shop's own module.
  QObject* singleton(const char* name) {
    QQmlComponent component(app_.window().engine());
    component.setData(
        QByteArray("import QtQuick\nimport Shop\nQtObject { property var it: ") + name + " }", {});
    keeper_.reset(component.create());
    return keeper_->property("it").value<QObject*>();
  }
  QStringList keysOf(const char* singletonName, const char* property) {
    return singleton(singletonName)
        ->property(property)
        .value<QJSValue>()
        .toVariant()
        .toMap()
        .keys();
  }

  void open(const QString& screenId) {
    QMetaObject::invokeMethod(&app_.shop(), "open", Q_ARG(QString, screenId),
                              Q_ARG(QVariant, QVariantMap()));
  }
  void look(const Look& at) {
    app_.language().setCode(QLatin1String(at.language));
    app_.shop().setProperty("textScale", at.scale);
    app_.shop().setProperty("dark", at.dark);
    app_.window().resize(at.size);
    await([&] { return app_.window().rootObject()->width() == at.size.width(); });
  }
  /// Lays out what is new.
  void settle() {
    (void)app_.window().grabWindow();
    QCoreApplication::processEvents();
    (void)app_.window().grabWindow();
  }
  void press(Qt::Key key) { QTest::keyClick(&app_.window(), key); }
  /// Presses Tab until a screen reader calls the focused item `spoken`; notes what it reads on the
  /// way.
  void tabTo(const std::string& spoken) {
    for (int presses = 0; presses < 60; ++presses) {
      const QQuickItem* focus = app_.window().activeFocusItem();
      if (focus && spokenItem(const_cast<QQuickItem*>(focus)) == spoken) return;
      press(Qt::Key_Tab);
      QCoreApplication::processEvents();
      hear();
    }
    FAIL() << "Tab does not lead to " << spoken;
  }
  void hear() {
    QQuickItem* focus = app_.window().activeFocusItem();
    if (focus) heard_.push_back(spokenItem(focus));
  }

  std::unique_ptr<QObject> keeper_;
  std::vector<std::string> heard_;
};

TEST_F(Everybody, FindsEachScreenLaidOutAtEverySizeAndLanguage) {
  const QStringList screens = keysOf("Screens", "screens");
  ASSERT_GT(screens.size(), 20);
  for (const Look& at : looks({"en", "de", "he"})) {
    SCOPED_TRACE(at.name());
    look(at);
    QMetaObject::invokeMethod(&app_.shop(), "startAgain");
    for (const QString& screenId : screens) {
      open(screenId);
      settle();
      EXPECT_THAT(layoutFaults(app_.window()), IsEmpty()) << qPrintable(screenId);
    }
  }
}

TEST_F(Everybody, SettlesWhenItIsTurnedOrResized) {
  // A layout that does not settle at least warns, which fails the test.
  const std::vector<Look> all = looks({"en", "de", "he"});
  std::mt19937 random(4);
  for (const QString& screenId : keysOf("Screens", "screens")) {
    QMetaObject::invokeMethod(&app_.shop(), "startAgain");
    open(screenId);
    for (int turn = 0; turn < 4; ++turn) {
      const Look& at = all[random() % all.size()];
      SCOPED_TRACE(screenId.toStdString() + " " + at.name());
      look(at);
      settle();
    }
  }
}

TEST_F(Everybody, ReachesEverythingByTab) {
  const QStringList screens = keysOf("Screens", "screens");
  for (const Look& at : looks({"en", "he"})) {
    SCOPED_TRACE(at.name());
    look(at);
    for (const QString& screenId : screens) {
      SCOPED_TRACE(screenId.toStdString());
      QMetaObject::invokeMethod(&app_.shop(), "startAgain");
      open(screenId);
      settle();
      EXPECT_THAT(reachFaults(app_.window()), IsEmpty());
    }
  }
}

TEST_F(Everybody, HoldsTheFocusInASheet) {
  const QStringList sheets = keysOf("Screens", "presentations");
  for (const Look& at : looks({"en", "de", "he"}))
    for (const QString& id : sheets) {
      SCOPED_TRACE(at.name() + " " + id.toStdString());
      look(at);
      QMetaObject::invokeMethod(&app_.shop(), "present", Q_ARG(QString, id));
      await([&] { return presentation() == id.toStdString(); });
      settle();
      EXPECT_THAT(layoutFaults(app_.window()), IsEmpty());
      EXPECT_THAT(reachFaults(app_.window()), IsEmpty());
      press(Qt::Key_Escape);
      await([&] { return presentation().empty(); });
      EXPECT_EQ(screen(), "main") << "Escape closes the sheet and nothing else";
    }
}

TEST_F(Everybody, DimsTheWholeWindowBehindASheet) {
  look({.size = {1280, 800}});
  const auto corners = [&] {
    const QImage seen = app_.window().grabWindow();
    return std::array{seen.pixelColor(2, 2).lightness(), seen.pixelColor(1277, 2).lightness(),
                      seen.pixelColor(2, 797).lightness(), seen.pixelColor(1277, 797).lightness()};
  };
  const auto isDim = [&] { return std::ranges::max(corners()) < 160; };
  await([&] { return std::ranges::min(corners()) > 200; });
  QMetaObject::invokeMethod(&app_.shop(), "present", Q_ARG(QString, "fit_sheet"));
  await(isDim);
  EXPECT_TRUE(isDim());
  press(Qt::Key_Escape);
  await([&] { return std::ranges::min(corners()) > 200; });
  type("orders");
  await(isDim);
  EXPECT_TRUE(isDim());
}

TEST_F(Everybody, SeesEnoughContrastInEveryColour) {
  const QObject& theme = *singleton("Theme");
  const auto color = [&](const char* name) { return theme.property(name).value<QColor>(); };
  const struct {
    const char* ink;
    const char* ground;
    double least;
  } pairs[] = {
      {"ink", "page", 7},          {"ink", "surface", 7},         {"ink", "sunken", 7},
      {"soft", "page", 4.5},       {"soft", "surface", 4.5},      {"soft", "sunken", 4.5},
      {"soft", "accentSoft", 4.5}, {"ink", "accentSoft", 4.5},    {"accent", "page", 4.5},
      {"accent", "surface", 4.5},  {"accent", "accentSoft", 4.5}, {"accentInk", "accent", 4.5},
      {"warm", "page", 4.5},       {"warm", "surface", 4.5},      {"warmInk", "warm", 4.5},
      {"warm", "warmSoft", 3},     {"bannerInk", "banner", 4.5},  {"edge", "page", 3},
      {"edge", "surface", 3},
  };
  for (const bool dark : {false, true}) {
    app_.shop().setProperty("dark", dark);
    for (const auto& pair : pairs)
      EXPECT_GE(contrast(color(pair.ink), color(pair.ground)), pair.least)
          << pair.ink << " on " << pair.ground << (dark ? " by night" : " by day");
    for (double hue = 0; hue < 1; hue += 0.05) {
      QColor ground;
      QMetaObject::invokeMethod(const_cast<QObject*>(&theme), "tint", Q_RETURN_ARG(QColor, ground),
                                Q_ARG(double, hue));
      EXPECT_GE(contrast(color("ink"), ground), 4.5) << hue;
    }
  }
}

TEST_F(Everybody, StacksAScreenOnceAndKeepsItsPlace) {
  const auto navigator = [&] { return item("navigator").property("depth").toInt(); };
  open("results");
  for (int taps = 0; taps < 3; ++taps) open("results");
  EXPECT_EQ(navigator(), 2);
  auto* page = item("navigator").property("currentItem").value<QQuickItem*>();
  (void)app_.window().grabWindow();
  page->setProperty("contentY", 120);
  open("basket");
  open("results");
  EXPECT_EQ(navigator(), 2) << "it is come back to";
  EXPECT_EQ(page->property("contentY"), 120);

  // While a screen comes in, taps are ignored and a command waits.
  app_.shop().setProperty("pace", 60);
  open("purchases");
  EXPECT_FALSE(item("navigator").isEnabled());
  open("member");
  await([&] { return screen() == "member"; });
}

TEST_F(Everybody, BuysByKeyboardAloneAndHearsEachStep) {
  hear();
  tabTo("button: Cart, 3 pieces");
  press(Qt::Key_Return);
  await([&] { return screen() == "basket"; });
  const std::vector<std::string> cart = spokenPage(app_.window());
  EXPECT_THAT(cart, Contains("text: Rain jacket, €129 each, 1 piece"));
  EXPECT_THAT(cart, Contains("text: Stoneware mug, €18 each, 2 pieces"));
  EXPECT_THAT(cart, Contains("text: Total, €165"));
  tabTo("button: One Stoneware mug less");
  press(Qt::Key_Space);
  EXPECT_THAT(spokenPage(app_.window()), Contains("text: Total, €147"));
  EXPECT_EQ(spokenItem(app_.window().activeFocusItem()),
            "button: Take Stoneware mug out of the cart")
      << "the focus stays where it was";
  tabTo("button: Check out");
  press(Qt::Key_Return);
  await([&] { return screen() == "purchase_flow"; });
  tabTo("button: Place order for €147");
  press(Qt::Key_Return);
  EXPECT_THAT(spokenPage(app_.window()), Contains("heading: Thank you!"));
  tabTo("button: Track it");
  press(Qt::Key_Return);
  await([&] { return screen() == "parcel"; });
  EXPECT_THAT(spokenPage(app_.window()), Contains("heading: Track order"));
  press(Qt::Key_Escape);
  EXPECT_EQ(screen(), "purchase_flow");
  if (qEnvironmentVariableIsSet("ZELVORA_TELL"))
    for (const std::string& line : heard_) std::cout << line << '\n';
}

TEST_F(Everybody, PicksAChoiceByKeyboard) {
  press(Qt::Key_F6);
  for (const char letter : std::string("orders")) QTest::keyClick(&app_.window(), letter);
  press(Qt::Key_Return);
  await([&] { return app_.shop().property("mode") == QStringLiteral("choices"); });
  await([&] {
    const QQuickItem* focus = app_.window().activeFocusItem();
    return focus && focus->objectName() == "row0";
  });
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  await([&] { return screen() == "parcel"; });
}

TEST_F(Everybody, ChangesWhatWasHeardAndSendsIt) {
  const auto clip = folder_.path() / "command.caf";
  testing::writeRecording(clip, {16000, 1}, testing::asFloats(testing::spoken("track my order")));
  tap(item("speak"));
  await([&] { return assistant().state() == ZelvoraMicState::Listening; });
  const auto player = sound_.play(clip, "mic");
  await([&] { return !assistant().heardText().isEmpty(); });
  await([&] { return app_.shop().property("mode") == QStringLiteral("answer"); });
  EXPECT_EQ(screen(), "parcel") << assistant().heardText().toStdString();
  tap(item("change"));
  await([&] { return item("commandField").property("text") == assistant().heardText(); });
  QTest::keyClick(&app_.window(), Qt::Key_A, Qt::ControlModifier);
  for (const char letter : std::string("open my cart")) QTest::keyClick(&app_.window(), letter);
  press(Qt::Key_Return);
  await([&] { return screen() == "basket"; });
}

TEST_F(Everybody, GoesOnWithoutTheMicrophoneThatWasRefused) {
  permissions_->microphone = false;
  tabTo("button: Speak a command");
  press(Qt::Key_Space);
  await([&] { return app_.shop().property("mode") == QStringLiteral("permission"); });
  EXPECT_THAT(spokenPage(app_.window()),
              Contains("alert: The microphone is switched off for this app"));
  tabTo("button: Type instead");
  press(Qt::Key_Return);
  await([&] {
    const QQuickItem* focus = app_.window().activeFocusItem();
    return focus && focus->flags().testFlag(QQuickItem::ItemAcceptsInputMethod);
  });
  for (const char letter : std::string("open my cart")) QTest::keyClick(&app_.window(), letter);
  press(Qt::Key_Return);
  await([&] { return screen() == "basket"; });
  EXPECT_TRUE(states_.empty() || states_.front() != ZelvoraMicState::Listening);

  permissions_->microphone = true;
  QTest::qWait(1000);  // Any sooner, it would count as the second of two taps.
  tabTo("button: Speak a command");
  press(Qt::Key_Space);
  await([&] { return assistant().state() == ZelvoraMicState::Listening; });
  press(Qt::Key_Escape);
  EXPECT_EQ(assistant().state(), ZelvoraMicState::Idle) << "Escape gives a command up";
  EXPECT_EQ(screen(), "basket");
}

TEST_F(Everybody, SpeaksTheLanguageThatIsChosen) {
  const QStringList before = assistant().examples();
  open("setup");
  tap(item("language-he"));
  EXPECT_TRUE(app_.language().rightToLeft());
  EXPECT_THAT(spokenPage(app_.window()), Contains("heading: הגדרות"));
  await([&] { return assistant().examples() != before; });
  EXPECT_THAT(spokenPage(app_.window()), Contains("field: לאן תרצו להגיע?"));
  assistant().route(QStringLiteral("פתח את העגלה"));
  await([&] { return screen() == "basket"; });
}

TEST_F(Everybody, WritesNumbersAsTheLanguageDoes) {
  const struct {
    const char* language;
    const char* rating;
    const char* price;
    const char* size;
    const char* store;
  } rows[] = {
      {"en", "4.7 of 5, 214 reviews", "€129", "Size 38, 5 in Britain, 24.0 centimetres",
       "4 Quay Road, open until 20:00 · 0.6\u00A0km"},
      {"de", "4,7 von 5, 214 Bewertungen", "129\u00A0€", "Größe 38, britisch 5, 24,0 Zentimeter",
       "Kaistraße 4, geöffnet bis 20:00 · 0,6\u00A0km"},
      {"he", "4.7 מתוך 5, 214 ביקורות", "€129", "מידה 38, בבריטניה 5, 24.0 סנטימטר",
       "דרך הרציף 4, פתוח עד 20:00 · 0.6\u00A0ק״מ"}};
  const auto hears = [&](const char* words) {
    EXPECT_THAT(spokenPage(app_.window()), Contains(HasSubstr(words)));
  };
  for (const auto& row : rows) {
    look({.size = {390, 844}, .language = row.language});
    open("opinions");
    hears(row.rating);
    open("basket");
    hears(row.price);
    open("map");
    hears(row.store);
    QMetaObject::invokeMethod(&app_.shop(), "present", Q_ARG(QString, "fit_sheet"));
    await([&] { return presentation() == "fit_sheet"; });
    hears(row.size);
    QMetaObject::invokeMethod(&app_.shop(), "startAgain");
  }
}

}  // namespace
}  // namespace zelvora::shop
