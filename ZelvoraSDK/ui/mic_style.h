#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtQml/QtQml>

namespace zelvora {

/// Sizes and texts of a ZelvoraMicButton. Lengths are in points, which Qt Quick calls pixels.
struct ZelvoraMicStyle {
  Q_GADGET
  QML_VALUE_TYPE(zelvoraMicStyle)
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
  QML_STRUCTURED_VALUE  // a whole style in one binding; untried: this project is built with Qt 6.4
#endif
  Q_PROPERTY(double size MEMBER size) Q_PROPERTY(double bottomPadding MEMBER bottomPadding)
      Q_PROPERTY(double trailingPadding MEMBER trailingPadding)
          Q_PROPERTY(bool showsPulseWhileListening MEMBER showsPulseWhileListening)
              Q_PROPERTY(bool showsText MEMBER showsText)
                  Q_PROPERTY(QString idleLabel MEMBER idleLabel)
                      Q_PROPERTY(QString listeningLabel MEMBER listeningLabel)
                          Q_PROPERTY(QString processingLabel MEMBER processingLabel)

                              public : double size = 64;
  double bottomPadding = 28;
  double trailingPadding = 18;
  bool showsPulseWhileListening = true;
  bool showsText = false;
  QString idleLabel = QStringLiteral("Speak");
  QString listeningLabel = QStringLiteral("Listening\u2026");
  QString processingLabel = QStringLiteral("Processing\u2026");

  bool operator==(const ZelvoraMicStyle&) const = default;
};

}  // namespace zelvora
