#pragma once

#include <QtCore/QObject>
#include <QtQml/QtQml>

#include <array>
#include <charconv>

namespace zelvora {

/// How numbers of choices are written.
class ChoiceText : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  /// With two decimals and a point, whatever the locale: 0.87.
  Q_INVOKABLE static QString confidence(double value) {
    // As printf rounds, halves to even: Qt's own and JavaScript's formatting round them up.
    std::array<char, 320> text{};
    const auto end =
        std::to_chars(text.begin(), text.end(), value, std::chars_format::fixed, 2).ptr;
    return QString::fromLatin1(text.data(), end - text.data());
  }
};

}  // namespace zelvora
