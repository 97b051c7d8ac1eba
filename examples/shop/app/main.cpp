#include <QCommandLineParser>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string_view>

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

int run(QGuiApplication& application) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("A shop that is used by tapping, typing and talking."));
  parser.addHelpOption();
  parser.addOption({QStringLiteral("bundle"), QStringLiteral("The application bundle."),
                    QStringLiteral("folder"), QStringLiteral(SHOP_BUNDLE)});
  parser.addOption({QStringLiteral("tour"), QStringLiteral("Paint all screens to PNG files."),
                    QStringLiteral("folder")});
  parser.process(application);

  zelvora::shop::chooseTypeFace();
  zelvora::shop::ShopOptions options{.bundle =
                                         parser.value(QStringLiteral("bundle")).toStdString()};
  const QString tour = parser.value(QStringLiteral("tour"));
  const QTemporaryDir nobody;  // a tour is one of a customer who has picked nothing yet
  if (!tour.isEmpty()) options.dataFolder = nobody.path().toStdString();
  zelvora::shop::ShopApplication shop(options);
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
  try {
    return run(application);
  } catch (const std::exception& failure) {
    std::cerr << "zelvora-shop: " << failure.what() << '\n';
    return EXIT_FAILURE;
  }
}
