#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtGui/QAccessible>
#include <QtTest/QTest>

#include <tests/ui/scene.h>

namespace zelvora {
namespace {

constexpr char kOwnBundle[] = ":/qt-project.org/imports/Zelvora/ZelvoraSDK_ZelvoraSDK.bundle";

QByteArray floatingMic(const QByteArray& inside) {
  return "Rectangle { color: 'white'; property int taps; property int stops\n"
         "ZelvoraFloatingMic { objectName: 'mic'; anchors.centerIn: parent; " +
         inside + "\n} }";
}

TEST(FloatingMic, ShowsTheStateAsSymbolWordAndSpokenName) {
  const struct {
    const char* state;
    const char* symbol;
    const char* word;
    bool stop;
  } rows[] = {
      {"Idle", "mic.fill", "Speak", false},
      {"Listening", "waveform", "Listening\u2026", true},
      {"Processing", "hourglass", "Thinking\u2026", false},
  };
  for (const auto& row : rows) {
    const Scene scene(floatingMic(QByteArray("state: ZelvoraFloatingMic.") + row.state));
    EXPECT_EQ(scene.item("symbolFrame")->property("symbol").toString(), row.symbol);
    EXPECT_EQ(scene.item("word")->property("text").toString(), QString::fromUtf8(row.word));
    EXPECT_EQ(spoken(scene.item("pill")).name, QString::fromUtf8(row.word));
    EXPECT_EQ(scene.find("stop") != nullptr, row.stop) << row.state;
  }
}

TEST(FloatingMic, KeepsItsSizesAndGapsInEveryState) {
  for (const char* state : {"Idle", "Listening", "Processing"}) {
    const Scene scene(floatingMic(QByteArray("state: ZelvoraFloatingMic.") + state));
    const QRectF pill = scene.place("pill");
    const QRectF symbol = scene.place("symbolFrame");
    const QRectF word = scene.place("word");
    EXPECT_EQ(symbol.size(), QSizeF(28, 28));
    EXPECT_EQ(symbol.left(), pill.left() + 14);
    EXPECT_EQ(symbol.center().y(), pill.center().y());
    EXPECT_EQ(word.left(), symbol.right() + 10);
    EXPECT_EQ(pill.right(), word.right() + 14);
    EXPECT_EQ(pill.height(), 12 + 28 + 12);
    // The stop button's place is reserved in every state.
    const QRectF stop = scene.place("stopPlace");
    EXPECT_EQ(stop.size(), QSizeF(29, 29));
    EXPECT_EQ(stop.left(), pill.right() + 10);
    EXPECT_NEAR(stop.center().y(), pill.center().y(), 0.5);
    EXPECT_EQ(scene.place("mic").right(), pill.right() + 10 + 29);
  }
}

TEST(FloatingMic, RunsTheOtherWayWhenMirrored) {
  const Scene scene(
      floatingMic("state: ZelvoraFloatingMic.Listening; badge: ZelvoraBadgeType.Success\n"
                  "LayoutMirroring.enabled: true; LayoutMirroring.childrenInherit: true"));
  EXPECT_EQ(scene.place("symbolFrame").right(), scene.place("pill").right() - 14);
  EXPECT_LT(scene.place("word").right(), scene.place("symbolFrame").left());
  EXPECT_LT(scene.place("stop").right(), scene.place("pill").left());
  EXPECT_EQ(scene.place("image").center().x(), scene.place("pill").left() + 8);
}

TEST(FloatingMic, SignalsTapsOfItsTwoButtons) {
  const Scene scene(
      floatingMic("state: ZelvoraFloatingMic.Listening\n"
                  "onTap: ++parent.taps; onStopTap: ++parent.stops"));
  scene.tap("pill");
  pressByScreenReader(scene.item("pill"));
  EXPECT_EQ(scene.get("taps"), 2);
  EXPECT_EQ(scene.get("stops"), 0);

  scene.tap("stop");
  scene.tap(scene.place("stop").center() + QPointF(21, 21));  // at the edge of 44 points
  scene.item("stop")->forceActiveFocus(Qt::TabFocusReason);
  QTest::keyClick(scene.window(), Qt::Key_Space);
  QTest::keyClick(scene.window(), Qt::Key_Return);
  EXPECT_EQ(scene.get("stops"), 4);
  EXPECT_EQ(scene.get("taps"), 2);
}

TEST(FloatingMic, IsTappedInEveryState) {
  for (const char* state : {"Idle", "Listening", "Processing"}) {
    const Scene scene(
        floatingMic(QByteArray("onTap: ++parent.taps; state: ZelvoraFloatingMic.") + state));
    scene.tap("pill");
    EXPECT_EQ(scene.get("taps"), 1) << state;
  }
}

TEST(FloatingMic, LeavesTheStopButtonInertWithoutAHandler) {
  const Scene scene(floatingMic("state: ZelvoraFloatingMic.Listening; onTap: ++parent.taps"));
  scene.tap("stop");
  EXPECT_EQ(spoken(scene.item("stop")).name, "Stop");
  EXPECT_EQ(scene.get("taps"), 0);
}

TEST(FloatingMic, GrowsWithTheText) {
  const Scene scene(floatingMic("ZelvoraTheme.textScale: 3"));
  EXPECT_EQ(scene.item("word")->property("font").value<QFont>().pixelSize(), 45);
  EXPECT_EQ(scene.place("pill").height(), 24 + scene.place("word").height());
  EXPECT_EQ(scene.place("pill").width(), 14 + 28 + 10 + scene.place("word").width() + 14);
}

TEST(Badge, ShowsItsImageInAFrameOf24Points) {
  const struct {
    const char* type;
    QColor expected;
  } rows[] = {{"Success", QColor(0x32, 0xba, 0x61)}, {"Failure", QColor(0xee, 0x4f, 0x44)}};
  for (const auto& row : rows) {
    const Scene scene(floatingMic(QByteArray("badge: ZelvoraBadgeType.") + row.type));
    EXPECT_EQ(scene.place("image").size(), QSizeF(24, 24));
    // Left of the sign, on the disc.
    const QColor found =
        scene.picture().pixelColor((scene.place("image").center() - QPointF(7, 0)).toPoint());
    EXPECT_NEAR(found.red(), row.expected.red(), 12) << row.type;
    EXPECT_NEAR(found.green(), row.expected.green(), 12) << row.type;
    EXPECT_NEAR(found.blue(), row.expected.blue(), 12) << row.type;
  }
  EXPECT_EQ(Scene(floatingMic("")).find("image"), nullptr);
}

TEST(Badge, IsHiddenFromScreenReaders) {
  const Scene scene("ZelvoraBadgeView { objectName: 'badgeView' }");
  EXPECT_TRUE(spoken(scene.item("badgeView")).hidden);
  EXPECT_TRUE(spoken(scene.item("image")).hidden);
}

TEST(Badge, LeavesItsFrameEmptyWhenTheBundleLacksTheImage) {
  const QTemporaryDir bundle;
  const Scene scene("Rectangle { color: 'white'; ZelvoraBadgeView { anchors.centerIn: parent } }",
                    {60, 60});
  scene.item("image")->setProperty("bundle", bundle.path());
  EXPECT_EQ(scene.place("image").size(), QSizeF(24, 24));
  QImage white(60, 60, QImage::Format_RGB32);
  white.fill(Qt::white);
  EXPECT_EQ(scene.picture().convertToFormat(white.format()), white);
}

TEST(Badge, UsesABitmapWhenTheBundleHasNoDrawing) {
  const QTemporaryDir bundle;
  QImage blue(48, 48, QImage::Format_RGB32);
  blue.fill(Qt::blue);
  ASSERT_TRUE(blue.save(bundle.filePath("badge_success.png")));
  const Scene scene("Item { ZelvoraBadgeView { anchors.centerIn: parent } }", {60, 60});
  scene.item("image")->setProperty("bundle", bundle.path());
  EXPECT_EQ(scene.picture().pixelColor(30, 30), QColor(Qt::blue));
}

TEST(Badge, PrintsEachImageThatItShows) {
  const auto said = [](const char* image) {
    return std::string("BADGE bundle = ") + kOwnBundle + ", image = " + image + "\n";
  };
  ::testing::internal::CaptureStdout();
  {
    const Scene scene("ZelvoraFloatingMic { badge: ZelvoraBadgeType.Failure }");
    scene.root()->setProperty("badge", 0);
    scene.root()->setProperty("badge", QVariant());
  }
  EXPECT_EQ(::testing::internal::GetCapturedStdout(),
            said("badge_failure") + said("badge_success"));
}

}  // namespace
}  // namespace zelvora
