#include "tour.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QImage>
#include <QObject>
#include <QQmlProperty>
#include <QString>
#include <QTimer>
#include <array>

#include <ZelvoraSDK/base/error.h>
#include <ZelvoraSDK/ui/zelvora_assistant.h>

namespace zelvora::shop {
namespace {

struct Stop {
  const char* name;       ///< Of the picture.
  const char* command;    ///< Typed before it is taken; null: none.
  bool answered = false;  ///< Whether the answer is seen.
};

constexpr std::array kStops{
    Stop{"home", nullptr},
    Stop{"answer", "show me running shoes", true},
    Stop{"shoes", "show me running shoes"},
    Stop{"product", "show the product details"},
    Stop{"reviews", "read the customer reviews"},
    Stop{"cart", "open my cart"},
    Stop{"checkout", "go to checkout"},
    Stop{"orders", "show me my orders"},
    Stop{"choices", "orders", true},
    Stop{"tracking", "where is my package"},
    Stop{"order-again", "buy it again"},
    Stop{"search", "search for a product"},
    Stop{"categories", "browse all categories"},
    Stop{"deals", "is anything on sale"},
    Stop{"promotion", "open the spring promotion"},
    Stop{"size-guide", "show me the size guide"},
    Stop{"scanner", "scan a barcode"},
    Stop{"sign-out", "sign me out"},
    Stop{"wish-list", "open my wish list"},
    Stop{"profile", "open my profile"},
    Stop{"settings", "open the settings"},
    Stop{"help", "I need help"},
    Stop{"chat", "start a live chat"},
    Stop{"stores", "where is the nearest store"},
    Stop{"hours", "what are the opening hours"},
    Stop{"notifications", "show my notifications"},
    Stop{"payment", "add a credit card"},
    Stop{"not-understood", "what is the weather on mars", true},
};

/// Sends `command` and waits for its outcome.
void say(ZelvoraAssistant& assistant, const QString& command) {
  bool answered = false;
  const auto watching = QObject::connect(&assistant, &ZelvoraAssistant::lastOutcomeChanged,
                                         [&answered] { answered = true; });
  QTimer alarm;  // wakes the loop below
  alarm.start(std::chrono::milliseconds(100));
  assistant.route(command);
  const QDeadlineTimer patience(std::chrono::seconds(20));
  while (!answered && !patience.hasExpired())
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  QObject::disconnect(watching);
  if (!answered) throw Error("Shop", 3, "no answer to: " + command.toStdString());
}

void paint(ShopApplication& application, const std::filesystem::path& file) {
  // No event loop runs around a tour, so deferred deletions must be carried out here.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  // By then everything has come up.
  const QDeadlineTimer moving(std::chrono::milliseconds(60));
  while (!moving.hasExpired()) QCoreApplication::processEvents();
  const QImage picture = application.window().grabWindow();
  if (!picture.save(QString::fromStdString(file.string())))
    throw Error("Shop", 4, "can't write " + file.string());
}

void walk(ShopApplication& application, const std::filesystem::path& folder, bool dark) {
  QObject& shop = application.shop();
  auto& assistant = *shop.property("assistant").value<ZelvoraAssistant*>();
  QQmlProperty::write(&shop, QStringLiteral("dark"), dark);
  QMetaObject::invokeMethod(&shop, "startAgain");
  int number = 0;
  for (const Stop& stop : kStops) {
    if (stop.command) say(assistant, QString::fromUtf8(stop.command));
    if (!stop.answered) QMetaObject::invokeMethod(&shop, "hideAnswer");
    const QString name = QStringLiteral("%1-%2%3.png")
                             .arg(++number, 2, 10, QLatin1Char('0'))
                             .arg(QLatin1String(stop.name), QLatin1String(dark ? "-dark" : ""));
    paint(application, folder / name.toStdString());
    QMetaObject::invokeMethod(&assistant, "dismissChoices");
  }
}

}  // namespace

void paintTour(ShopApplication& application, const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  application.replies().setMuted(true);
  QQmlProperty::write(&application.shop(), QStringLiteral("pace"), 0);
  application.window().show();
  for (const bool dark : {false, true}) walk(application, folder, dark);
}

}  // namespace zelvora::shop
