#include <tests/ui/picture.h>

#include <QtGui/QFontDatabase>
#include <QtGui/QGuiApplication>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickRenderControl>
#include <QtQuick/QQuickRenderTarget>
#include <QtQuick/QQuickWindow>
#include <stdexcept>

namespace zelvora {
namespace {

constexpr char kLight[] = R"(
  color: '#f2f2f7'
  palette { window: '#f2f2f7'; windowText: '#1c1c1e'; base: '#ffffff'; text: '#1c1c1e'; highlight: '#0a6cff' }
)";
constexpr char kDark[] = R"(
  color: '#101012'
  palette { window: '#101012'; windowText: '#f5f5f7'; base: '#242427'; text: '#f5f5f7'; highlight: '#4a9bff' }
)";

QByteArray onGround(const QByteArray& inside, const char* look) {
  return QByteArray("import QtQuick\nimport Zelvora\nRectangle {") + look + inside + "\n}";
}

/// The scene's items, and what draws them into an image.
class Stage {
 public:
  explicit Stage(const Picture& picture) : window_(&control_) {
    QQmlComponent component(&engine_);
    component.setData(picture.qml, QUrl(picture.name + QStringLiteral(".qml")));
    root_.reset(qobject_cast<QQuickItem*>(component.create()));
    if (!root_) throw std::runtime_error(qPrintable(component.errorString()));
    root_->setSize(picture.size);
    root_->setParentItem(window_.contentItem());
    window_.contentItem()->setSize(picture.size);
    window_.setGeometry(QRect(QPoint(), picture.size));
  }

  QImage draw(double pixelRatio) {
    QImage image(window_.size() * pixelRatio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(pixelRatio);
    image.fill(Qt::transparent);
    QQuickRenderTarget target = QQuickRenderTarget::fromPaintDevice(&image);
    target.setDevicePixelRatio(pixelRatio);
    window_.setRenderTarget(target);
    control_.polishItems();
    control_.beginFrame();
    control_.sync();
    control_.render();
    control_.endFrame();
    return image;
  }

 private:
  QQuickRenderControl control_;
  QQuickWindow window_;
  QQmlEngine engine_;
  std::unique_ptr<QQuickItem> root_;
};

}  // namespace

std::vector<Picture> pictures() {
  const struct {
    const char* name;
    const char* qml;
    QSize size;
  } rows[] = {
      {"mic-button", R"(
        component Cell: Item {
          property alias state: mic.state
          property alias style: mic.style
          width: 130; height: 132
          ZelvoraMicButton { id: mic; reducedMotion: true; style { trailingPadding: 33; bottomPadding: 34 } }
        }
        Row {
          Cell { state: ZelvoraMicState.Idle }
          Cell { state: ZelvoraMicState.Listening }
          Cell { state: ZelvoraMicState.Processing }
        })",
       {390, 132}},
      {"mic-button-captions", R"(
        component Cell: Item {
          property alias state: mic.state
          width: 130; height: 140
          ZelvoraMicButton { id: mic; reducedMotion: true; style { trailingPadding: 30; bottomPadding: 20; showsText: true } }
        }
        Row {
          Cell { state: ZelvoraMicState.Idle }
          Cell { state: ZelvoraMicState.Listening }
          Cell { state: ZelvoraMicState.Processing }
        })",
       {390, 140}},
      {"floating-mic", R"(
        Grid {
          anchors.centerIn: parent; columns: 2; spacing: 34
          ZelvoraFloatingMic {}
          ZelvoraFloatingMic { state: ZelvoraFloatingMic.Listening }
          ZelvoraFloatingMic { state: ZelvoraFloatingMic.Processing }
          ZelvoraFloatingMic { badge: ZelvoraBadgeType.Success }
          ZelvoraFloatingMic { badge: ZelvoraBadgeType.Failure }
        })",
       {440, 270}},
      {"badges", R"(
        Row {
          anchors.centerIn: parent; spacing: 24
          ZelvoraBadgeView { type: ZelvoraBadgeType.Success }
          ZelvoraBadgeView { type: ZelvoraBadgeType.Failure }
        })",
       {160, 64}},
      {"choice-sheet", R"(
        ZelvoraChoiceSheet {
          anchors { fill: parent; topMargin: 8 }
          title: 'Which one?'
          say: 'I\u2019m not sure what you meant. Here are a few options:'
          choices: [{title: 'My orders', confidence: 0.87}, {title: 'Track an order', confidence: 0.62},
                    {title: 'Return or exchange something that you bought', confidence: 0.41}]
        })",
       {390, 300}},
  };
  std::vector<Picture> all;
  for (const auto& row : rows) {
    const QString name = QString::fromLatin1(row.name);
    all.push_back({name + QStringLiteral("-light"), onGround(row.qml, kLight), row.size});
    all.push_back({name + QStringLiteral("-dark"), onGround(row.qml, kDark), row.size});
  }
  return all;
}

QImage render(const Picture& picture, double pixelRatio) {
  return Stage(picture).draw(pixelRatio);
}

}  // namespace zelvora
