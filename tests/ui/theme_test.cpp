#include <ZelvoraSDK/ui/zelvora_theme.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlProperty>
#include <algorithm>
#include <random>

#include <tests/ui/scene.h>

namespace zelvora {
namespace {

const ZelvoraTheme& themeOf(QObject* item) {
  return *qobject_cast<ZelvoraTheme*>(qmlAttachedPropertiesObject<ZelvoraTheme>(item));
}

/// A pair of colours shown one on the other, and the least contrast it needs.
struct Pair {
  const char* name;
  QColor one, other;
  double least;
};

std::vector<Pair> pairsOf(const ZelvoraTheme& theme) {
  return {{"secondary text on background", theme.secondaryText(), theme.background(), 4.5},
          {"secondary text on surface", theme.secondaryText(), theme.surface(), 4.5},
          {"accent's text on background", theme.accentText(), theme.background(), 4.5},
          {"accent's text on surface", theme.accentText(), theme.surface(), 4.5},
          {"words on accent", theme.onAccent(), theme.accent(), 4.5},
          {"edge on surface", theme.edge(), theme.surface(), 3},
          {"edge on background", theme.edge(), theme.background(), 3}};
}

QQuickItem* made(QQmlEngine& engine, const QByteArray& qml) {
  QQmlComponent component(&engine);
  component.setData("import QtQuick\nimport Zelvora\n" + qml, QUrl("theme.qml"));
  auto* item = qobject_cast<QQuickItem*>(component.create());
  if (!item) throw std::runtime_error(qPrintable(component.errorString()));
  return item;
}

TEST(Theme, IsInheritedFromWhereItIsSet) {
  const Scene scene(
      "Item { ZelvoraTheme.accent: 'teal'; ZelvoraTheme.textScale: 2\n"
      "property Item other: Item { ZelvoraTheme.accent: 'red' }\n"
      "Item { objectName: 'outer'; ZelvoraTheme.reducedMotion: true\n"
      "Item { Item { objectName: 'inner'; property color seen: ZelvoraTheme.accent } } } }");
  const ZelvoraTheme& inner = themeOf(scene.root()->findChild<QQuickItem*>("inner"));
  EXPECT_EQ(inner.accent(), QColor("teal"));
  EXPECT_EQ(inner.textScale(), 2);
  EXPECT_TRUE(inner.reducedMotion());
  EXPECT_FALSE(themeOf(scene.root()).reducedMotion()) << "only what lies below inherits";

  // The nearest setting counts, until it is unset or the item moves elsewhere.
  auto* outer = scene.item("outer");
  QQmlProperty::write(outer, "ZelvoraTheme.accent", QColor("blue"), qmlContext(outer));
  EXPECT_EQ(inner.accent(), QColor("blue"));
  EXPECT_EQ(scene.root()->findChild<QQuickItem*>("inner")->property("seen").value<QColor>(),
            QColor("blue"));
  QQmlProperty(outer, "ZelvoraTheme.accent", qmlContext(outer)).reset();
  EXPECT_EQ(inner.accent(), QColor("teal"));
  outer->setParentItem(scene.get("other").value<QQuickItem*>());
  EXPECT_EQ(inner.accent(), QColor("red"));
}

// Each of the two modules has a name for it, and a library of its own.
TEST(Theme, IsOneForApplicationsAndForTheViewsOwnParts) {
  QQmlEngine engine;
  const std::unique_ptr<QQuickItem> root(
      made(engine,
           "import Zelvora.Private as Private\n"
           "Item { id: root; ZelvoraTheme.textScale: 2\n"
           "readonly property bool isOne: root.ZelvoraTheme === root.Private.Theme }"));
  EXPECT_TRUE(root->property("isOne").toBool());
}

TEST(Theme, FollowsThePaletteWhereNothingIsSet) {
  const Scene scene(
      "Item { palette { window: '#203040'; windowText: 'white'; base: '#304050'; highlight: "
      "'orange' }\n Item { objectName: 'below' } }",
      {100, 100});
  const ZelvoraTheme& theme = themeOf(scene.item("below"));
  EXPECT_EQ(theme.background(), QColor("#203040"));
  EXPECT_EQ(theme.surface(), QColor("#304050"));
  EXPECT_EQ(theme.text(), QColor("white"));
  EXPECT_EQ(theme.accent(), QColor("orange"));
  EXPECT_TRUE(theme.dark());
  int changes = 0;
  QObject::connect(&theme, &ZelvoraTheme::changed, [&] { ++changes; });
  QQmlProperty::write(scene.root(), "palette.window", QColor("white"), qmlContext(scene.root()));
  EXPECT_GT(changes, 0);
  EXPECT_FALSE(theme.dark());
  QQmlProperty::write(scene.root(), "ZelvoraTheme.dark", true, qmlContext(scene.root()));
  EXPECT_LT(theme.background().lightnessF(), 0.5F) << "a dark theme has dark colours of its own";
  EXPECT_GE(contrast(theme.text(), theme.background()), 7);
}

TEST(Theme, FollowsTheStylesInLightAndDark) {
  const struct {
    const char* style;
    const char* set;
    bool dark;
  } rows[] = {
      {"Basic", "", false},
      {"Basic", "palette.window: '#101010'; palette.windowText: 'white'; palette.base: '#202020'",
       true},
      {"Fusion", "", false},
      {"Fusion", "palette.window: '#101010'; palette.windowText: 'white'; palette.base: '#202020'",
       true},
      {"Material", "Material.theme: Material.Light; Material.accent: Material.Teal", false},
      {"Material", "Material.theme: Material.Dark; Material.accent: Material.Teal", true},
      {"Universal", "Universal.theme: Universal.Light", false},
      {"Universal", "Universal.theme: Universal.Dark", true},
  };
  for (const auto& row : rows) {
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(QByteArray("import QtQuick\nimport QtQuick.Controls.") + row.style +
                          "\nimport Zelvora\nItem { " + row.set +
                          "\nItem { objectName: 'below'; property bool dark: ZelvoraTheme.dark } }",
                      QUrl("style.qml"));
    const std::unique_ptr<QObject> root(component.create());
    ASSERT_TRUE(root) << qPrintable(component.errorString());
    auto* below = root->findChild<QQuickItem*>("below");
    const ZelvoraTheme& theme = themeOf(below);
    EXPECT_EQ(theme.dark(), row.dark) << row.style;
    EXPECT_EQ(below->property("dark").toBool(), row.dark) << row.style;
    EXPECT_GE(contrast(theme.text(), theme.background()), 7) << row.style;
    EXPECT_GE(contrast(theme.text(), theme.surface()), 7) << row.style;
    for (const Pair& pair : pairsOf(theme))
      EXPECT_GE(contrast(pair.one, pair.other), pair.least) << row.style << ": " << pair.name;
  }
}

TEST(Theme, IsReadableWhateverColoursTheHostHas) {
  QQmlEngine engine;
  const std::unique_ptr<QQuickItem> item(made(engine, "Item {}"));
  std::mt19937 random(7);
  const auto between = [&](int low, int high) {
    return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
  };
  for (int round = 0; round < 400; ++round) {
    const bool dark = round % 2 == 1;
    const auto shade = [&] {
      const int low = dark ? 0 : 215, high = dark ? 45 : 255;
      return QColor(between(low, high), between(low, high), between(low, high));
    };
    const int ink = dark ? between(225, 255) : between(0, 40);
    for (const auto& [name, color] :
         {std::pair{"background", shade()},
          {"surface", shade()},
          {"text", QColor(ink, ink, ink)},
          {"accent", QColor(between(0, 255), between(0, 255), between(0, 255))}})
      QQmlProperty::write(item.get(), QStringLiteral("ZelvoraTheme.") + name, color,
                          qmlContext(item.get()));
    const ZelvoraTheme& theme = themeOf(item.get());
    for (const Pair& pair : pairsOf(theme))
      ASSERT_GE(contrast(pair.one, pair.other), pair.least)
          << pair.name << " " << qPrintable(pair.one.name()) << " "
          << qPrintable(pair.other.name());
  }
}

/// The names that the module adds to QML, without their versions.
QStringList exportedNames() {
  QFile types(QStringLiteral(ZELVORA_QML_FOLDER "/Zelvora/zelvora_ui.qmltypes"));
  QFile folder(QStringLiteral(ZELVORA_QML_FOLDER "/Zelvora/qmldir"));
  if (!types.open(QIODevice::ReadOnly) || !folder.open(QIODevice::ReadOnly)) return {};
  QStringList names;
  const QRegularExpression exported(QStringLiteral("\"Zelvora/(\\w+) "));
  for (auto found = exported.globalMatch(QString::fromUtf8(types.readAll())); found.hasNext();)
    names << found.next().captured(1);
  const QRegularExpression file(QStringLiteral("^(?:singleton )?(\\w+) [\\d.]+ \\w+\\.qml$"),
                                QRegularExpression::MultilineOption);
  for (auto found = file.globalMatch(QString::fromUtf8(folder.readAll())); found.hasNext();)
    names << found.next().captured(1);
  names.removeDuplicates();
  names.sort(Qt::CaseInsensitive);
  return names;
}

TEST(Names, OfTheModuleAreZelvorasOnly) {
  EXPECT_EQ(exportedNames(),
            (QStringList{"ZelvoraAssistant", "zelvoraAuditEvent", "ZelvoraBadgeType",
                         "ZelvoraBadgeView", "zelvoraChoice", "ZelvoraChoiceSheet",
                         "ZelvoraCommandSurface", "ZelvoraFloatingMic", "ZelvoraMicButton",
                         "ZelvoraMicState", "zelvoraMicStyle", "zelvoraOutcome", "ZelvoraTheme"}));
}

TEST(Names, LeaveThoseOfStylesAndApplicationsAlone) {
  const QTemporaryDir folder;
  // What an application, or a set of components that it uses, may well call its own files.
  const char* const own[] = {"Shadow",      "Symbol", "Plate",  "Chip",  "Wave",
                             "PlainButton", "Notice", "Card",   "Icon",  "ShadowedRectangle",
                             "FocusRing",   "Halo",   "Insets", "Theme", "BadgeImage"};
  for (const char* name : own) {
    QFile file(folder.filePath(QString::fromLatin1(name) + ".qml"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("import QtQuick\nItem { readonly property bool isOurs: true }\n");
  }
  for (const char* style : {"Basic", "Fusion", "Material", "Universal"}) {
    QQmlEngine engine;
    QQmlComponent component(&engine);
    QByteArray page = QByteArray("import QtQuick\nimport QtQuick.Controls.") + style +
                      "\nimport Zelvora\nItem {\nproperty string symbol: typeof Symbol\n";
    if (qstrcmp(style, "Material") == 0) page += "Material.theme: Material.Dark\n";
    page += "Button { text: 'A' }\nZelvoraMicButton {}\nZelvoraFloatingMic {}\n";
    for (const char* name : own)
      if (qstrcmp(name, "Symbol") != 0) page += QByteArray(name) + " { objectName: 'own' }\n";
    component.setData(page + "}", QUrl::fromLocalFile(folder.filePath("Page.qml")));
    const std::unique_ptr<QObject> root(component.create());
    ASSERT_TRUE(root) << style << ": " << qPrintable(component.errorString());
    const auto found = root->findChildren<QObject*>("own");
    EXPECT_EQ(found.size(), static_cast<qsizetype>(std::size(own)) - 1);
    for (const QObject* item : found) EXPECT_TRUE(item->property("isOurs").toBool()) << style;
  }
}

}  // namespace
}  // namespace zelvora
