#include <gtest/gtest.h>

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>

namespace zelvora {
namespace {

TEST(Docs, ExamplesOfTheViewsLoad) {
  QFile page(QStringLiteral(ZELVORA_SOURCE_DIR "/docs/views.md"));
  ASSERT_TRUE(page.open(QIODevice::ReadOnly));
  const QRegularExpression block(QStringLiteral("```qml\n(.*?)```"),
                                 QRegularExpression::DotMatchesEverythingOption);
  int examples = 0;
  for (auto found = block.globalMatch(QString::fromUtf8(page.readAll())); found.hasNext();) {
    const QString text = found.next().captured(1);
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(text.toUtf8(), QUrl(QStringLiteral("views.md.qml")));
    EXPECT_TRUE(component.isReady()) << qPrintable(component.errorString());
    // An assistant would need a platform.
    if (!text.contains(QStringLiteral("ZelvoraAssistant"))) {
      EXPECT_NE(std::unique_ptr<QObject>(component.create()), nullptr) << qPrintable(text);
    }
    ++examples;
  }
  EXPECT_GE(examples, 4);
}

}  // namespace
}  // namespace zelvora
