#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QUrl>
#include <QtGui/QColor>
#include <QtQml/QtQml>
#include <QtQuick/QQuickItem>
#include <optional>

#include <ZelvoraSDK/base/library.h>

namespace zelvora {

/// The colours that a ZelvoraTheme settles on.
struct ThemeColors {
  QColor background;
  QColor surface;
  QColor text;
  QColor accent;
  bool dark = false;

  bool operator==(const ThemeColors&) const = default;
};

/// The contrast of light on dark or dark on light, from 1 to 21.
[[nodiscard]] double contrast(const QColor& one, const QColor& other);
/// `color`, moved towards black or white until it stands out from `ground` by `least`.
[[nodiscard]] QColor readableOn(QColor color, const QColor& ground, double least);

/// How the views of this module look, inherited from item to item: set once at the root, it holds
/// for everything below. What is set nowhere follows the Material or Universal style of the
/// surroundings, else the item's palette.
class ZELVORA_EXPORT ZelvoraTheme : public QObject {
  Q_OBJECT
  QML_NAMED_ELEMENT(Theme)
  QML_UNCREATABLE("ZelvoraTheme is attached to an item")
  QML_ATTACHED(zelvora::ZelvoraTheme)
  /// The colour behind the views.
  Q_PROPERTY(
      QColor background READ background WRITE setBackground RESET resetBackground NOTIFY changed)
  /// Of cards, rows and sheets.
  Q_PROPERTY(QColor surface READ surface WRITE setSurface RESET resetSurface NOTIFY changed)
  Q_PROPERTY(QColor text READ text WRITE setText RESET resetText NOTIFY changed)
  /// Unset: the text's colour, as faint as it may be at a contrast of 4.5.
  Q_PROPERTY(QColor secondaryText READ secondaryText WRITE setSecondaryText RESET resetSecondaryText
                 NOTIFY changed)
  Q_PROPERTY(QColor accent READ accent WRITE setAccent RESET resetAccent NOTIFY changed)
  /// Of words and symbols on the accent.
  Q_PROPERTY(QColor onAccent READ onAccent NOTIFY changed)
  /// The accent, moved until words in it can be read on the surface and the background.
  Q_PROPERTY(QColor accentText READ accentText NOTIFY changed)
  /// Of the edges of fields, at a contrast of 3.
  Q_PROPERTY(QColor edge READ edge NOTIFY changed)
  Q_PROPERTY(bool dark READ dark WRITE setDark RESET resetDark NOTIFY changed)
  /// Multiplies the sizes of all texts.
  Q_PROPERTY(double textScale READ textScale WRITE setTextScale RESET resetTextScale NOTIFY changed)
  Q_PROPERTY(bool reducedMotion READ reducedMotion WRITE setReducedMotion RESET resetReducedMotion
                 NOTIFY changed)
  /// A folder with SVG files that replace our symbols of the same names.
  Q_PROPERTY(QUrl icons READ icons WRITE setIcons RESET resetIcons NOTIFY changed)

 public:
  explicit ZelvoraTheme(QObject* item);
  ~ZelvoraTheme() override;

  static ZelvoraTheme* qmlAttachedProperties(QObject* item);

  [[nodiscard]] QColor background() const { return colors().background; }
  [[nodiscard]] QColor surface() const { return colors().surface; }
  [[nodiscard]] QColor text() const { return colors().text; }
  [[nodiscard]] QColor secondaryText() const;
  [[nodiscard]] QColor accent() const { return colors().accent; }
  [[nodiscard]] QColor onAccent() const;
  [[nodiscard]] QColor accentText() const;
  [[nodiscard]] QColor edge() const;
  [[nodiscard]] bool dark() const { return colors().dark; }
  [[nodiscard]] double textScale() const;
  [[nodiscard]] bool reducedMotion() const;
  [[nodiscard]] QUrl icons() const;

  void setBackground(const QColor& color) { set(&Values::background, color); }
  void setSurface(const QColor& color) { set(&Values::surface, color); }
  void setText(const QColor& color) { set(&Values::text, color); }
  void setSecondaryText(const QColor& color) { set(&Values::secondaryText, color); }
  void setAccent(const QColor& color) { set(&Values::accent, color); }
  void setDark(bool dark) { set(&Values::dark, dark); }
  void setTextScale(double scale) { set(&Values::textScale, scale); }
  void setReducedMotion(bool reduced) { set(&Values::reducedMotion, reduced); }
  void setIcons(const QUrl& folder) { set(&Values::icons, folder); }

  void resetBackground() { set(&Values::background, std::nullopt); }
  void resetSurface() { set(&Values::surface, std::nullopt); }
  void resetText() { set(&Values::text, std::nullopt); }
  void resetSecondaryText() { set(&Values::secondaryText, std::nullopt); }
  void resetAccent() { set(&Values::accent, std::nullopt); }
  void resetDark() { set(&Values::dark, std::nullopt); }
  void resetTextScale() { set(&Values::textScale, std::nullopt); }
  void resetReducedMotion() { set(&Values::reducedMotion, std::nullopt); }
  void resetIcons() { set(&Values::icons, std::nullopt); }

  /// Moves `color` until it can be read on `ground`: 4.5 for words, 3 for shapes.
  Q_INVOKABLE static QColor readable(const QColor& color, const QColor& ground, double least) {
    return readableOn(color, ground, least);
  }

 Q_SIGNALS:
  /// When any value changes, even an inherited one.
  void changed();

 private:
  struct Values {
    std::optional<QColor> background, surface, text, secondaryText, accent;
    std::optional<bool> dark;
    std::optional<double> textScale;
    std::optional<bool> reducedMotion;
    std::optional<QUrl> icons;
  };

  template <class Value, class Given>
  void set(std::optional<Value> Values::*field, Given value) {
    const std::optional<Value> wanted(std::move(value));
    if (values_.*field == wanted) return;
    values_.*field = wanted;
    joinAncestors();
    refresh();
  }
  template <class Value>
  std::optional<Value> inherited(std::optional<Value> Values::*field) const {
    for (const ZelvoraTheme* theme = this; theme; theme = theme->above())
      if (theme->values_.*field) return theme->values_.*field;
    return std::nullopt;
  }

  [[nodiscard]] const ThemeColors& colors() const;
  [[nodiscard]] const ZelvoraTheme* above() const;
  void beginToWatch();
  /// Watches the ancestors, among which a new parent or a new theme may appear.
  void watchTheWay();
  void watchAncestors();
  void watchStyle();
  /// Lets the themes below, which may be older, find this one.
  void joinAncestors();
  Q_SLOT void refresh();

  QPointer<QQuickItem> item_;
  mutable QPointer<ZelvoraTheme> above_;
  mutable std::optional<ThemeColors> colors_;
  QList<QMetaObject::Connection> watched_;
  Values values_;
  mutable bool watchesPalette_ = false;
  bool isWatching_ = false;
  bool isFound_ = false;  ///< By the themes below.
};

}  // namespace zelvora
