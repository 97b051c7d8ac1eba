#include <gtest/gtest.h>

#include <QtGui/QAccessible>
#include <QtTest/QTest>

#include <ZelvoraSDK/ui/values.h>
#include <tests/ui/scene.h>

namespace zelvora {
namespace {

QByteArray sheet(const QByteArray& inside) {
  return "ZelvoraChoiceSheet { property var picked; onSelect: choice => picked = choice\n"
         "title: 'Which one?'\n" +
         inside + "\n}";
}

QString rowText(const Scene& scene, int row) {
  return spoken(scene.item(("row" + QByteArray::number(row)).constData())).name;
}

TEST(ChoiceSheet, ListsTheChoicesInTheirOrder) {
  const Scene scene(
      sheet("choices: [{title: 'Orders', confidence: 0.874}, {title: 'Cart', confidence: 1},"
            " {title: 'Help', confidence: 0.125}, {title: 'Home', confidence: 0}]"));
  // 0.125 is exact and rounds to the even digit.
  const char* const expected[] = {"Orders, 0.87", "Cart, 1.00", "Help, 0.12", "Home, 0.00"};
  for (int row = 0; row < 4; ++row) {
    EXPECT_EQ(rowText(scene, row), expected[row]);
    EXPECT_EQ(scene.place(("row" + QByteArray::number(row)).constData()),
              QRectF(16, scene.place("row0").top() + 48 * row, 390 - 32, 48));
  }
}

TEST(ChoiceSheet, ShowsWhatIsSaidUnlessItIsEmpty) {
  const Scene silent(sheet("say: ''"));
  EXPECT_EQ(silent.find("say"), nullptr);
  EXPECT_EQ(silent.item("list")->property("count"), 0) << "an empty list is shown all the same";

  const Scene speaking(sheet("say: 'Here are a few options:'"));
  EXPECT_EQ(speaking.item("say")->property("text"), "Here are a few options:");
  EXPECT_EQ(speaking.place("say").top(), speaking.place("title").bottom() + 12);
  EXPECT_EQ(speaking.place("list").top(), speaking.place("say").bottom() + 12);
}

TEST(ChoiceSheet, CarriesItsTitleAsTheNavigationTitleToo) {
  const Scene scene(sheet(""));
  EXPECT_EQ(scene.item("title")->property("text"), "Which one?");
  EXPECT_EQ(scene.place("title").top(), 12);
  EXPECT_EQ(scene.get("currentItem").value<QQuickItem*>()->property("title"), "Which one?");
}

TEST(ChoiceSheet, ReportsWhichChoiceWasPicked) {
  const Scene scene(sheet(""));
  const ZelvoraChoice orders{"t.orders", "Orders", 0.87, "orders", Params{{"id", "7"}}};
  const ZelvoraChoice cart{"t.cart", "Cart", 0.6};
  scene.root()->setProperty("choices", choiceValues({orders, cart}));
  QCoreApplication::processEvents();

  scene.tap("row1");
  EXPECT_EQ(scene.get("picked").value<ChoiceValue>().choice(), cart);
  pressByScreenReader(scene.item("row0"));
  EXPECT_EQ(scene.get("picked").value<ChoiceValue>().choice(), orders);
}

TEST(ChoiceSheet, IsWalkedAndPickedFromByKeys) {
  const Scene scene(
      sheet("choices: Array.from({length: 40}, (_, i) => ({title: 'T' + i, confidence: 0.5}))"));
  scene.item("row0")->forceActiveFocus(Qt::TabFocusReason);
  for (int step = 0; step < 30; ++step) QTest::keyClick(scene.window(), Qt::Key_Down);
  QTest::keyClick(scene.window(), Qt::Key_Up);
  QTest::keyClick(scene.window(), Qt::Key_Return);
  EXPECT_EQ(scene.get("picked").toMap().value("title"), "T29");
  EXPECT_TRUE(QRectF(0, 0, 390, 844).contains(scene.place("row29"))) << "it came into sight";
}

TEST(ChoiceSheet, RunsTheOtherWayWhenMirrored) {
  const Scene scene(
      sheet("LayoutMirroring.enabled: true; LayoutMirroring.childrenInherit: true\n"
            "choices: [{title: '\u05e2\u05d2\u05dc\u05d4', confidence: 0.5}]"));
  EXPECT_EQ(scene.place("choiceTitle").right(), 390 - 32);
  EXPECT_EQ(scene.place("confidence").left(), 32);
}

TEST(ChoiceSheet, GrowsWithTheText) {
  const Scene scene(sheet(
      "ZelvoraTheme.textScale: 2; choices: [{title: 'One that is quite long', confidence: 0.5}]"));
  EXPECT_GE(scene.place("row0").height(), scene.place("choiceTitle").height() + 24);
  EXPECT_GT(scene.place("choiceTitle").height(), 2 * 34) << "two lines of 34 points";
}

TEST(ChoiceValue, LeavesOutWhatTheChoiceLacks) {
  const ChoiceValue bare(ZelvoraChoice{"t", "T", 0.5});
  EXPECT_FALSE(bare.screenId().isValid());
  EXPECT_FALSE(bare.params().isValid());
  const ChoiceValue full(ZelvoraChoice{"t", "T", 0.5, "screen", Params{{"id", "7"}}});
  EXPECT_EQ(full.screenId(), "screen");
  EXPECT_EQ(full.params().toMap(), (QVariantMap{{"id", "7"}}));
}

}  // namespace
}  // namespace zelvora
