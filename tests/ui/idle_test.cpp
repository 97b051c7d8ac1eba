#include <gtest/gtest.h>

#include <tests/ui/scene.h>
#include <tests/ui/stage.h>

namespace zelvora {
namespace {

TEST(Views, CallForNoFrameWhileNothingChanges) {
  const struct {
    const char* view;
    bool moves;
  } rows[] = {
      {"ZelvoraMicButton {}", false},
      {"ZelvoraMicButton { state: ZelvoraMicState.Processing }", false},
      {"ZelvoraMicButton { state: ZelvoraMicState.Listening; ZelvoraTheme.reducedMotion: true }",
       false},
      {"ZelvoraMicButton { state: ZelvoraMicState.Listening }", true},
      {"ZelvoraFloatingMic { state: ZelvoraFloatingMic.Listening; badge: ZelvoraBadgeType.Success "
       "}",
       false},
      {"ZelvoraChoiceSheet { choices: [{title: 'Cart', confidence: 1}] }", false},
  };
  for (const auto& row : rows) {
    AnimationClock clock;
    Stage stage(QByteArray("import QtQuick\nimport Zelvora\nItem {") + row.view + "}", {390, 844});
    const auto draw = [&] {
      clock.pass(15);
      stage.draw(1);
    };
    for (int frame = 0; frame < 3; ++frame) draw();  // the first ones still settle
    int calls = 0;
    for (const auto signal :
         {&QQuickRenderControl::sceneChanged, &QQuickRenderControl::renderRequested})
      QObject::connect(&stage.control(), signal, [&] { ++calls; });
    for (int frame = 0; frame < 60; ++frame) draw();
    EXPECT_EQ(calls > 0, row.moves) << row.view << " called for " << calls << " frames";
  }
}

}  // namespace
}  // namespace zelvora
