// Writes the pictures of docs/views.md into the folder given: those of the single views; with
// "surface", those of the command surface in its states; with "film", its animation.

#include <QtCore/QDir>
#include <QtGui/QFont>
#include <QtGui/QGuiApplication>
#include <cmath>
#include <cstdio>
#include <optional>
#include <stdexcept>

#include <tests/ui/conversation.h>
#include <tests/ui/picture.h>
#include <tests/ui/pictures/animated_picture.h>
#include <tests/ui/stage.h>

namespace zelvora {
namespace {

void save(const QImage& image, const QString& path) {
  if (!image.save(path)) throw std::runtime_error("can't write " + path.toStdString());
}

void drawViews(const QDir& folder, const QString& beginning) {
  for (const Picture& picture : pictures())
    if (picture.name.startsWith(beginning))
      save(render(picture), folder.filePath(picture.name + QStringLiteral(".png")));
}

void drawStates(const QDir& folder) {
  for (const std::string& state : Conversation::states())
    for (const bool dark : {false, true}) {
      const bool moves = state == "listening";
      std::optional<AnimationClock> clock;
      if (moves) clock.emplace();
      Conversation talk({.size = {360, 600},
                         .dark = dark,
                         .more = moves ? "ZelvoraTheme.reducedMotion: false" : ""});
      talk.bring(state);
      for (int frame = 0; moves && frame < 60; ++frame) {
        const auto level = static_cast<float>(0.3 * std::abs(std::sin(frame * 0.37)));
        talk.application.standIns.microphone->play(std::vector<float>(512, level));
        clock->pass(40, 20);
      }
      // Processing events would end the thinking with an answer.
      for (int turns = 0; turns < 20 && state != "thinking"; ++turns)
        QCoreApplication::processEvents();
      const QString name = QStringLiteral("surface-%1-%2.png")
                               .arg(QString::fromStdString(state).replace(u' ', u'-'),
                                    QLatin1String(dark ? "dark" : "light"));
      save(talk.scene->picture(), folder.filePath(name));
    }
}

/// The views beside a button of each style's own.
void drawStyles(const QDir& folder) {
  const struct {
    const char* style;
    const char* dark;
  } rows[] = {
      {"Basic",
       "palette { window: '#161618'; windowText: 'white'; base: '#26262a'; text: 'white'; "
       "button: '#3a3a3f'; buttonText: 'white'; highlight: '#4a9bff' }"},
      {"Fusion",
       "palette { window: '#323232'; windowText: 'white'; base: '#242424'; text: 'white'; "
       "button: '#484848'; buttonText: 'white'; highlight: '#2f8fe0' }"},
      {"Material", "Material.theme: Material.Dark"},
      {"Universal", "Universal.theme: Universal.Dark"},
  };
  for (const auto& row : rows)
    for (const bool dark : {false, true}) {
      const QByteArray page = QByteArray("import QtQuick\nimport QtQuick.Controls.") + row.style +
                              "\nimport Zelvora\nPane {\n" + (dark ? row.dark : "") + R"(
        Button { text: "A button of the style"; anchors.horizontalCenter: parent.horizontalCenter; y: 8 }
        ZelvoraFloatingMic { anchors.horizontalCenter: parent.horizontalCenter; y: 68 }
        ZelvoraMicButton { state: ZelvoraMicState.Listening; ZelvoraTheme.reducedMotion: true
                           style { trailingPadding: 10; bottomPadding: 4; showsText: true } }
        ZelvoraChoiceSheet { x: 0; y: 130; width: 220; height: 150; title: "Which one?"
                             choices: [{title: "My orders", confidence: 0.87}, {title: "Cart", confidence: 0.62}] }
      })";
      const QString name = QStringLiteral("style-%1-%2.png")
                               .arg(QString::fromLatin1(row.style).toLower(),
                                    QLatin1String(dark ? "dark" : "light"));
      save(Stage(page, {330, 290}).draw(2), folder.filePath(name));
    }
}

/// A command from the first tap to its answer.
void drawConversation(const QDir& folder) {
  AnimationClock clock;
  Conversation talk({.size = {360, 300}, .more = "ZelvoraTheme.reducedMotion: false"});
  AnimatedPicture film;
  double phase = 0;
  const auto shoot = [&](int frames, double loudness) {
    for (int frame = 0; frame < frames; ++frame) {
      phase += 0.9;
      const auto level = static_cast<float>(loudness * (0.35 + 0.65 * std::abs(std::sin(phase))));
      if (loudness > 0) talk.application.standIns.microphone->play(std::vector<float>(512, level));
      clock.pass(80, 20);
      film.add(talk.scene->picture(), 80);
    }
  };
  shoot(8, 0);
  talk.listen();
  shoot(3, 0.02);
  std::string words;
  for (const char* word : {"what", " is", " in", " my", " shopping", " cart"}) {
    talk.hear(words += word);
    shoot(3, 0.4);
  }
  talk.application.standIns.recognizer->lateResult = {
      .text = words, .segments = {{words, 0.9}}, .isFinal = true};
  shoot(3, 0.004);
  talk.assistant->stop();
  talk.await("answer");
  shoot(20, 0);
  film.save(folder.filePath(QStringLiteral("surface-conversation.png")).toStdString());
}

}  // namespace
}  // namespace zelvora

int main(int argc, char** argv) {
  const QString wanted = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QString();
  const bool surface = wanted == QLatin1String("surface");
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_QUICK_BACKEND", "software");
  if (surface) qputenv("QT_SCALE_FACTOR", "2");
  const QGuiApplication application(argc, argv);
  QGuiApplication::setFont(QFont(QStringLiteral("Inter")));
  const QDir folder(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("."));
  try {
    if (surface) {
      zelvora::drawStates(folder);
    } else if (wanted == QLatin1String("film")) {
      zelvora::drawConversation(folder);
    } else {
      zelvora::drawViews(folder, wanted);
      if (wanted.isEmpty() || wanted == QLatin1String("style")) zelvora::drawStyles(folder);
    }
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
}
