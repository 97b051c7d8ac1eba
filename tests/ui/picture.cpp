#include <tests/ui/picture.h>

#include <tests/ui/stage.h>

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

}  // namespace

std::vector<Picture> pictures() {
  const struct {
    const char* name;
    const char* qml;
    QSize size;
  } rows[] = {
      {"mic-button",
       R"(
        component Cell: Item {
          property alias state: mic.state
          property alias style: mic.style
          width: 130; height: 132
          ZelvoraMicButton { id: mic; ZelvoraTheme.reducedMotion: true; style { trailingPadding: 33; bottomPadding: 34 } }
        }
        Row {
          Cell { state: ZelvoraMicState.Idle }
          Cell { state: ZelvoraMicState.Listening }
          Cell { state: ZelvoraMicState.Processing }
        })",
       {390, 132}},
      {"mic-button-captions",
       R"(
        component Cell: Item {
          property alias state: mic.state
          width: 130; height: 140
          ZelvoraMicButton { id: mic; ZelvoraTheme.reducedMotion: true; style { trailingPadding: 30; bottomPadding: 20; showsText: true } }
        }
        Row {
          Cell { state: ZelvoraMicState.Idle }
          Cell { state: ZelvoraMicState.Listening }
          Cell { state: ZelvoraMicState.Processing }
        })",
       {390, 140}},
      {"floating-mic",
       R"(
        Grid {
          anchors.centerIn: parent; columns: 2; spacing: 34
          ZelvoraFloatingMic {}
          ZelvoraFloatingMic { state: ZelvoraFloatingMic.Listening }
          ZelvoraFloatingMic { state: ZelvoraFloatingMic.Processing }
          ZelvoraFloatingMic { badge: ZelvoraBadgeType.Success }
          ZelvoraFloatingMic { badge: ZelvoraBadgeType.Failure }
        })",
       {440, 270}},
      {"badges",
       R"(
        Row {
          anchors.centerIn: parent; spacing: 24
          ZelvoraBadgeView { type: ZelvoraBadgeType.Success }
          ZelvoraBadgeView { type: ZelvoraBadgeType.Failure }
        })",
       {160, 64}},
      {"choice-sheet",
       R"(
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
  return Stage(picture.qml, picture.size).draw(pixelRatio);
}

}  // namespace zelvora
