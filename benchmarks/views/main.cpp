// What the views cost to make, to draw, and while nothing happens. Making them is compared with two
// of the toolkit's buttons, an empty one and a styled one. Exits with 1 when a view costs more than
// six empty buttons, a step of the halo more than the whole screen, or a surface at rest a frame.

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

#include <tests/ui/animation_clock.h>
#include <tests/ui/stage.h>

namespace zelvora {
namespace {

constexpr double kMaxButtons = 6;  ///< A view may cost as much to make as this many empty buttons.

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
                               "ZelvoraFloatingMic {}", "ZelvoraCommandSurface {}"};
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
  return std::max(times[2], times[3]) <= kMaxButtons * times[0];
}

bool measureDrawing() {
  Stage stage(R"(import QtQuick
import Zelvora
Rectangle {
    color: "white"
    ZelvoraMicButton { state: ZelvoraMicState.Listening; ZelvoraTheme.reducedMotion: true }
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

/// The pill's shadow when its width changes, and a frame of the wave.
void measureParts() {
  AnimationClock clock;
  Stage stage(R"(import QtQuick
import Zelvora.Private
Rectangle {
    color: "white"
    Plate { objectName: "plate"; y: 40; width: 120; height: 52; fill: "white"; blur: 10; offset: 3; strength: 0.33 }
    Wave { objectName: "wave"; y: 200; width: 280; height: 40; running: true; level: 0.2 }
})",
              {390, 844});
  auto* const plate = stage.root()->findChild<QQuickItem*>("plate");
  auto* const wave = stage.root()->findChild<QQuickItem*>("wave");
  stage.draw(3);
  const auto widen = [&] {
    plate->setWidth(plate->width() < 150 ? plate->width() + 1 : 120);
    stage.redraw();
  };
  wave->setProperty("running", false);
  const double shadow = medians({widen}, 300)[0];
  wave->setProperty("running", true);
  int frame = 0;
  const auto step = [&] {
    wave->setProperty("level", 0.05 * (1 + frame++ % 7));
    clock.pass(16, 16);
    stage.redraw();
  };
  const double bars = medians({step}, 300)[0];
  std::printf("draw a wider shadow, 3x  %8.1f us\ndraw a frame of the wave %8.1f us\n", shadow,
              bars);
}

bool measureIdle() {
  AnimationClock clock;
  Stage stage("import QtQuick\nimport Zelvora\nItem { ZelvoraCommandSurface {} }", {390, 844});
  for (int frame = 0; frame < 3; ++frame) {
    clock.pass(16);
    stage.draw(1);
  }
  int frames = 0;
  for (const auto signal :
       {&QQuickRenderControl::sceneChanged, &QQuickRenderControl::renderRequested})
    QObject::connect(&stage.control(), signal, [&] { ++frames; });
  clock.pass(1000);
  std::printf("frames of a surface at rest in a second %d\n", frames);
  return frames == 0;
}

}  // namespace
}  // namespace zelvora

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_QUICK_BACKEND", "software");
  const QGuiApplication application(argc, argv);
  const bool made = zelvora::measureMaking();
  const bool drawn = zelvora::measureDrawing();
  zelvora::measureParts();
  const bool idle = zelvora::measureIdle();
  return made && drawn && idle ? 0 : 1;
}
