// What the views cost: to make, beside the toolkit's buttons, one that shows nothing and one with a
// look, and to draw. Exits with 1 when a view costs more than three of the latter, or a step of the
// halo more than the whole screen.

#include <QtGui/QGuiApplication>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

#include <tests/ui/stage.h>

namespace zelvora {
namespace {

constexpr double kMostButtons = 3;  ///< A view may cost as much to make as so many plain buttons.

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

double microseconds(const std::function<void()>& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin)
      .count();
}

/// The median time of `work` for each of several pieces of work, taken in turns.
std::vector<double> medians(const std::vector<std::function<void()>>& pieces, int rounds) {
  std::vector<std::vector<double>> times(pieces.size());
  for (int round = -10; round < rounds; ++round)  // the first ones warm up
    for (std::size_t piece = 0; piece < pieces.size(); ++piece) {
      const double time = microseconds(pieces[piece]);
      if (round >= 0) times[piece].push_back(time);
    }
  std::vector<double> result;
  for (auto& each : times) result.push_back(median(std::move(each)));
  return result;
}

bool measureMaking() {
  const char* const views[] = {"T.AbstractButton { contentItem: Item {} }",
                               "Basic.Button { text: 'Speak' }", "ZelvoraMicButton {}",
                               "ZelvoraFloatingMic {}"};
  QQmlEngine engine;
  std::vector<std::unique_ptr<QQmlComponent>> components;
  std::vector<std::function<void()>> pieces;
  for (const char* view : views) {
    auto component = std::make_unique<QQmlComponent>(&engine);
    component->setData(QByteArray("import QtQuick\nimport QtQuick.Templates as T\nimport "
                                  "QtQuick.Controls.Basic as Basic\nimport Zelvora\n") +
                           view,
                       {});
    if (!component->isReady()) throw std::runtime_error(qPrintable(component->errorString()));
    pieces.push_back([made = component.get()] { delete made->create(); });
    components.push_back(std::move(component));
  }

  const std::vector<double> times = medians(pieces, 2000);
  for (std::size_t view = 0; view < times.size(); ++view) {
    std::printf("make %-42s %8.1f us  %5.1f x\n", views[view], times[view], times[view] / times[0]);
  }
  return std::max(times[2], times[3]) <= kMostButtons * times[1];
}

bool measureDrawing() {
  Stage stage(R"(import QtQuick
import Zelvora
Rectangle {
    color: "white"
    ZelvoraMicButton { state: ZelvoraMicState.Listening; reducedMotion: true }
})",
              {390, 844});
  auto* const circle = stage.root()->findChild<QQuickItem*>("halo");
  if (!circle) throw std::runtime_error("no halo");
  QObject* const halo = circle->parentItem();
  stage.draw(2);
  double phase = 0;
  const auto pulse = [&] {
    phase = phase < 1 ? phase + 1.0 / 54 : 0;
    halo->setProperty("phase", phase);
    stage.redraw();
  };
  bool grey = false;
  const auto whole = [&] {
    grey = !grey;
    stage.root()->setProperty("color", grey ? QColor(0xfe, 0xfe, 0xfe) : QColor(Qt::white));
    stage.redraw();
  };
  const std::vector<double> times = medians({pulse, whole}, 300);
  std::printf("draw a step of the halo  %8.1f us\ndraw the whole screen    %8.1f us\n", times[0],
              times[1]);
  return times[0] < times[1];
}

}  // namespace
}  // namespace zelvora

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_QUICK_BACKEND", "software");
  const QGuiApplication application(argc, argv);
  const bool made = zelvora::measureMaking();
  const bool drawn = zelvora::measureDrawing();
  return made && drawn ? 0 : 1;
}
