#include <QCommandLineParser>
#include <QGuiApplication>
#include <QQmlProperty>
#include <QSize>
#include <QStringList>
#include <QTemporaryDir>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string_view>

#include <ZelvoraSDK/base/error.h>

#include "shop_application.h"
#include "tour.h"

namespace {

constexpr char kTourOption[] = "--tour";

/// A tour is painted without a screen, at twice the size.
void prepareTour() {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_QUICK_BACKEND", "software");
  qputenv("QT_SCALE_FACTOR", "2");
}

/// Throws Error for what can't be a window.
QSize sizeIn(const QString& text) {
  const QStringList sides = text.split(QLatin1Char('x'));
  const QSize size = sides.size() == 2 ? QSize(sides[0].toInt(), sides[1].toInt()) : QSize();
  if (size.isEmpty()) throw zelvora::Error("Shop", 5, "no size: " + text.toStdString());
  return size;
}

void look(zelvora::shop::ShopApplication& shop, const QCommandLineParser& options) {
  shop.window().resize(sizeIn(options.value(QStringLiteral("size"))));
  shop.language().setCode(options.value(QStringLiteral("language")));
  QQmlProperty::write(&shop.shop(), QStringLiteral("textScale"),
                      options.value(QStringLiteral("text-scale")).toDouble());
}

int run(QGuiApplication& application) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("A shop that is used by tapping, typing and talking."));
  parser.addHelpOption();
  parser.addOption({QStringLiteral("bundle"), QStringLiteral("The application bundle."),
                    QStringLiteral("folder"),
                    QString::fromStdString(zelvora::shop::ShopOptions::ownBundle().string())});
  parser.addOption({QStringLiteral("tour"), QStringLiteral("Paint all screens to PNG files."),
                    QStringLiteral("folder")});
  parser.addOption({QStringLiteral("size"), QStringLiteral("The window's, as 320x480."),
                    QStringLiteral("size"), QStringLiteral("390x844")});
  parser.addOption({QStringLiteral("language"), QStringLiteral("en, de or he."),
                    QStringLiteral("code"), QStringLiteral("en")});
  parser.addOption({QStringLiteral("text-scale"),
                    QStringLiteral("How large the words are, 1 to 2."), QStringLiteral("factor"),
                    QStringLiteral("1")});
  parser.process(application);

  zelvora::shop::chooseTypeFace();
  zelvora::shop::ShopOptions options{.bundle =
                                         parser.value(QStringLiteral("bundle")).toStdString()};
  const QString tour = parser.value(QStringLiteral("tour"));
  const QTemporaryDir nobody;  // a tour is for a customer who has picked nothing yet
  if (!tour.isEmpty()) options.dataFolder = nobody.path().toStdString();
  zelvora::shop::ShopApplication shop(options);
  // Set first, so that nothing moves in a picture, not even to the size that is wanted.
  if (!tour.isEmpty()) QQmlProperty::write(&shop.shop(), QStringLiteral("pace"), 0);
  look(shop, parser);
  if (!tour.isEmpty()) {
    zelvora::shop::paintTour(shop, tour.toStdString());
    return EXIT_SUCCESS;
  }
  shop.window().show();
  return QGuiApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i)
    if (std::string_view(argv[i]).starts_with(kTourOption)) prepareTour();
  QGuiApplication application(argc, argv);
  QGuiApplication::setApplicationName(QStringLiteral("zelvora-shop"));
  QGuiApplication::setDesktopFileName(QStringLiteral("io.github.zelvora.Shop"));
  try {
    return run(application);
  } catch (const std::exception& failure) {
    std::cerr << "zelvora-shop: " << failure.what() << '\n';
    return EXIT_FAILURE;
  }
}
