#include <gtest/gtest.h>

#include <QtGui/QAccessible>
#include <QtQml/QQmlProperty>
#include <QtTest/QTest>

#include <tests/ui/scene.h>

namespace zelvora {
namespace {

QByteArray micButton(const QByteArray& inside) {
  return "Item { property int taps; ZelvoraMicButton { onTap: ++parent.taps; " + inside + "\n} }";
}

TEST(MicButton, SitsInTheTrailingCornerOfItsContainer) {
  const struct {
    const char* name;
    const char* inside;
    QRectF expected;
  } rows[] = {
      {"default", "", {390 - 18 - 64, 844 - 28 - 64, 64, 64}},
      {"sizes of one's own",
       "style { size: 80; bottomPadding: 10; trailingPadding: 5 }",
       {390 - 5 - 80, 844 - 10 - 80, 80, 80}},
      {"from right to left",
       "LayoutMirroring.enabled: true; LayoutMirroring.childrenInherit: true",
       {18, 844 - 28 - 64, 64, 64}},
      {"a face of one's own",
       "content: Rectangle { width: 100; height: 40 }",
       {390 - 18 - 100, 844 - 28 - 40, 100, 40}},
  };
  for (const auto& row : rows) {
    const Scene scene(micButton(row.inside));
    EXPECT_EQ(scene.place("face"), row.expected) << row.name;
  }
}

TEST(MicButton, ShowsTheStateAsSymbolCaptionAndSpokenName) {
  const struct {
    const char* state;
    const char* symbol;
    const char* words;
  } rows[] = {
      {"Idle", "mic.fill", "Speak"},
      {"Listening", "waveform", "Listening\u2026"},
      {"Processing", "hourglass", "Processing\u2026"},
  };
  for (const auto& row : rows) {
    const QByteArray state = QByteArray("state: ZelvoraMicState.") + row.state;
    const Scene plain(micButton(state));
    EXPECT_EQ(plain.item("face")->property("symbol").toString(), row.symbol);
    EXPECT_EQ(spoken(plain.item("button")).name, QString::fromUtf8(row.words));
    EXPECT_EQ(spoken(plain.item("button")).role, QAccessible::Button);
    EXPECT_EQ(plain.find("caption"), nullptr) << row.state;

    const Scene captioned(micButton(state + "; style.showsText: true"));
    EXPECT_EQ(captioned.item("caption")->property("text").toString(), QString::fromUtf8(row.words));
    EXPECT_EQ(captioned.place("caption").top(), captioned.place("face").bottom() + 6);
    EXPECT_NEAR(captioned.place("caption").center().x(), captioned.place("face").center().x(), 0.5);
  }
}

TEST(MicButton, DrawsItsSymbolInTheTextColour) {
  const Scene scene("Rectangle { color: 'white'; palette.windowText: 'red'; ZelvoraMicButton {} }");
  const QPoint capsule = scene.place("face").center().toPoint() - QPoint(0, 4);
  EXPECT_EQ(scene.picture().pixelColor(capsule), QColor(Qt::red));
}

TEST(MicButton, SwingsItsHaloAsAnEaseInAndOut) {
  // The Bézier curve with control points (0.42, 0) and (0.58, 1), a quarter of the way along.
  constexpr double kQuarter = 0.129162;
  const struct {
    qint64 at;
    double phase;
  } rows[] = {{225, kQuarter},      {450, 0.5},  {675, 1 - kQuarter}, {900, 1},
              {1125, 1 - kQuarter}, {1350, 0.5}, {1575, kQuarter},    {1800, 0},
              {2250, 0.5}};
  AnimationClock clock;
  const Scene scene(micButton("state: ZelvoraMicState.Listening"));
  EXPECT_NEAR(scene.item("halo")->width(), 64, 1e-9);
  qint64 now = 0;
  for (const auto& row : rows) {
    clock.pass(row.at - now);
    now = row.at;
    EXPECT_NEAR(scene.item("halo")->width(), 64 * (1 + 0.35 * row.phase), 0.01) << row.at;
    EXPECT_NEAR(scene.item("halo")->opacity(), 0.22 - 0.12 * row.phase, 0.0001) << row.at;
    EXPECT_EQ(scene.place("halo").center(), scene.place("face").center()) << row.at;
  }
}

TEST(MicButton, HasAHaloOnlyWhileItListensAndMayPulse) {
  const struct {
    const char* inside;
    bool halo;
  } rows[] = {
      {"state: ZelvoraMicState.Idle", false},
      {"state: ZelvoraMicState.Processing", false},
      {"state: ZelvoraMicState.Listening", true},
      {"state: ZelvoraMicState.Listening; style.showsPulseWhileListening: false", false},
  };
  for (const auto& row : rows)
    EXPECT_EQ(Scene(micButton(row.inside)).find("halo") != nullptr, row.halo) << row.inside;

  const Scene leaving("ZelvoraMicButton { state: ZelvoraMicState.Listening }");
  leaving.root()->setProperty("state", 2);
  EXPECT_EQ(leaving.find("halo"), nullptr);
}

TEST(MicButton, HoldsItsHaloStillWhereMotionIsReduced) {
  AnimationClock clock;
  const Scene scene(
      "ZelvoraMicButton { state: ZelvoraMicState.Listening; ZelvoraTheme.reducedMotion: true }");
  clock.pass(450);
  EXPECT_EQ(scene.item("halo")->width(), 64 * 1.35);
  QQmlProperty::write(scene.root(), "ZelvoraTheme.reducedMotion", false, qmlContext(scene.root()));
  clock.pass(600);
  EXPECT_LT(scene.item("halo")->width(), 64 * 1.35);
  QQmlProperty::write(scene.root(), "ZelvoraTheme.reducedMotion", true, qmlContext(scene.root()));
  clock.pass(450);
  EXPECT_EQ(scene.item("halo")->width(), 64 * 1.35);
}

TEST(MicButton, SignalsTapsKeysAndPressesByAScreenReader) {
  const Scene scene(micButton(""));
  scene.tap("button");
  EXPECT_EQ(scene.get("taps"), 1);
  scene.item("button")->forceActiveFocus(Qt::TabFocusReason);
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
    QTest::keyClick(scene.window(), key);
  EXPECT_EQ(scene.get("taps"), 4);
  pressByScreenReader(scene.item("button"));
  EXPECT_EQ(scene.get("taps"), 5);
  scene.tap({20, 20});
  EXPECT_EQ(scene.get("taps"), 5) << "the view leaves the rest of the screen alone";
}

TEST(MicButton, ShowsTheFocusOfTheKeyboardAndNotOfAFinger) {
  const Scene scene(micButton(""));
  QTest::keyClick(scene.window(), Qt::Key_Tab);
  EXPECT_EQ(scene.place("focusRing"), scene.place("button").adjusted(-3, -3, 3, 3));
  const Scene tapped(micButton(""));
  tapped.tap("button");
  EXPECT_EQ(tapped.find("focusRing"), nullptr);
}

TEST(MicButton, AcceptsTapsOn44PointsHoweverSmallItIs) {
  const Scene scene(micButton("style.size: 24"));
  const QRectF face = scene.place("face");
  scene.tap(face.topLeft() - QPointF(9, 9));
  EXPECT_EQ(scene.get("taps"), 1);
  scene.tap(face.topLeft() - QPointF(11, 0));
  EXPECT_EQ(scene.get("taps"), 1);
}

}  // namespace
}  // namespace zelvora
