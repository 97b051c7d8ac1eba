#include <ZelvoraSDK/ui/zelvora_theme.h>

#include <QtQuick/QQuickWindow>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <utility>

namespace zelvora {
namespace {

const ThemeColors kLight{.background = QColor(0xf2, 0xf2, 0xf7),
                         .surface = QColor(0xff, 0xff, 0xff),
                         .text = QColor(0x1c, 0x1c, 0x1e),
                         .accent = QColor(0x0a, 0x6c, 0xff),
                         .dark = false};
const ThemeColors kDark{.background = QColor(0x10, 0x10, 0x12),
                        .surface = QColor(0x24, 0x24, 0x27),
                        .text = QColor(0xf5, 0xf5, 0xf7),
                        .accent = QColor(0x4a, 0x9b, 0xff),
                        .dark = true};

double luminance(const QColor& color) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

QColor mixed(const QColor& one, const QColor& other, double share) {
  const auto part = [share](float a, float b) { return static_cast<float>(a + (b - a) * share); };
  return QColor::fromRgbF(part(one.redF(), other.redF()), part(one.greenF(), other.greenF()),
                          part(one.blueF(), other.blueF()));
}

bool isDark(const QColor& ground) { return ground.lightnessF() < 0.5F; }

QColor entry(const QObject* palette, const char* role) {
  return palette ? palette->property(role).value<QColor>() : QColor();
}

/// The attached object of a style that recolours without the palette; null when `holder` has none.
QObject* styleOf(const QObject& holder) {
  for (QObject* child : holder.children()) {
    const char* name = child->metaObject()->className();
    if (std::strcmp(name, "QQuickMaterialStyle") == 0 ||
        std::strcmp(name, "QQuickUniversalStyle") == 0)
      return child;
  }
  return nullptr;
}

QObject* styleAround(const QQuickItem* item) {
  for (const QQuickItem* at = item; at; at = at->parentItem())
    if (QObject* style = styleOf(*at)) return style;
  const QQuickWindow* window = item ? item->window() : nullptr;
  return window ? styleOf(*window) : nullptr;
}

ThemeColors colorsOf(const QObject& style) {
  ThemeColors colors{.background = style.property("background").value<QColor>(),
                     .surface = {},
                     .text = style.property("foreground").value<QColor>(),
                     .accent = style.property("accent").value<QColor>(),
                     .dark = false};
  colors.dark = isDark(colors.background);
  // Material raises cards above the ground; Universal has no name for it either.
  colors.surface = colors.dark ? mixed(colors.background, Qt::white, 0.08)
                               : mixed(colors.background, Qt::white, 0.7);
  return colors;
}

ThemeColors paletteColors(const QQuickItem& item) {
  const auto* palette = item.property("palette").value<QObject*>();
  ThemeColors colors{.background = entry(palette, "window"),
                     .surface = entry(palette, "base"),
                     .text = entry(palette, "windowText"),
                     .accent = entry(palette, "highlight"),
                     .dark = false};
  colors.dark = isDark(colors.background);
  return colors;
}

/// Every theme of the main thread.
QList<ZelvoraTheme*>& allThemes() {
  static QList<ZelvoraTheme*> themes;
  return themes;
}

}  // namespace

double contrast(const QColor& one, const QColor& other) {
  const double a = luminance(one) + 0.05, b = luminance(other) + 0.05;
  return std::max(a, b) / std::min(a, b);
}

QColor readableOn(QColor color, const QColor& ground, double least) {
  const bool lighten = contrast(Qt::white, ground) > contrast(Qt::black, ground);
  const QColor end = lighten ? Qt::white : Qt::black;
  for (int step = 0; step <= 20; ++step) {
    const QColor moved = mixed(color, end, step / 20.0);
    if (contrast(moved, ground) >= least) return moved;
  }
  return end;
}

ZelvoraTheme::ZelvoraTheme(QObject* item) : QObject(item), item_(qobject_cast<QQuickItem*>(item)) {
  allThemes().append(this);
}

// Not inline: QML knows an item's theme by this function's address, and both modules register it.
ZelvoraTheme* ZelvoraTheme::qmlAttachedProperties(QObject* item) { return new ZelvoraTheme(item); }

ZelvoraTheme::~ZelvoraTheme() { allThemes().removeOne(this); }

void ZelvoraTheme::joinAncestors() {
  if (!item_ || std::exchange(isFound_, true)) return;
  for (ZelvoraTheme* theme : QList<ZelvoraTheme*>(allThemes()))
    if (theme != this && theme->isWatching_ && item_->isAncestorOf(theme->item_))
      theme->watchAncestors();
}

/// A theme that nobody reads watches nothing.
void ZelvoraTheme::beginToWatch() {
  if (!item_ || std::exchange(isWatching_, true)) return;
  connect(item_, &QQuickItem::windowChanged, this, [this] { watchAncestors(); });
  watchTheWay();
}

const ZelvoraTheme* ZelvoraTheme::above() const {
  const_cast<ZelvoraTheme*>(this)->beginToWatch();
  if (above_ || !item_) return above_;
  for (QQuickItem* at = item_->parentItem(); at && !above_; at = at->parentItem())
    above_ = qobject_cast<ZelvoraTheme*>(qmlAttachedPropertiesObject<ZelvoraTheme>(at, false));
  return above_;
}

void ZelvoraTheme::watchAncestors() {
  watchTheWay();
  refresh();
}

void ZelvoraTheme::watchTheWay() {
  for (const auto& connection : watched_) disconnect(connection);
  watched_.clear();
  above_ = nullptr;
  for (QQuickItem* at = item_; at; at = at->parentItem()) {
    watched_.append(connect(at, &QQuickItem::parentChanged, this, [this] { watchAncestors(); }));
    if (at == item_) continue;
    auto* theme = qobject_cast<ZelvoraTheme*>(qmlAttachedPropertiesObject<ZelvoraTheme>(at, false));
    if (!theme) continue;
    above_ = theme;
    watched_.append(connect(theme, &ZelvoraTheme::changed, this, &ZelvoraTheme::refresh));
    watched_.append(connect(theme, &QObject::destroyed, this, [this] { watchAncestors(); }));
    break;  // that one watches the rest of the way
  }
  watchStyle();
}

void ZelvoraTheme::watchStyle() {
  QObject* style = styleAround(item_);
  if (!style) return;
  for (const char* signal : {SIGNAL(themeChanged()), SIGNAL(accentChanged()),
                             SIGNAL(foregroundChanged()), SIGNAL(backgroundChanged())})
    watched_.append(connect(style, signal, this, SLOT(refresh())));
}

void ZelvoraTheme::refresh() {
  colors_.reset();
  Q_EMIT changed();
}

const ThemeColors& ZelvoraTheme::colors() const {
  const_cast<ZelvoraTheme*>(this)->beginToWatch();
  if (colors_) return *colors_;
  ThemeColors found = kLight;
  if (item_) {
    const QObject* style = styleAround(item_);
    found = style ? colorsOf(*style) : paletteColors(*item_);
    if (!style && !std::exchange(watchesPalette_, true))
      connect(item_, &QQuickItem::paletteChanged, this, &ZelvoraTheme::refresh);
  }
  // Dark colours would not match a light theme that was asked for, nor the other way round.
  const bool dark =
      inherited(&Values::dark)
          .value_or(inherited(&Values::background) ? isDark(*inherited(&Values::background))
                                                   : found.dark);
  if (dark != found.dark) found = dark ? kDark : kLight;
  found.background = inherited(&Values::background).value_or(found.background);
  found.surface = inherited(&Values::surface).value_or(found.surface);
  found.text = inherited(&Values::text).value_or(found.text);
  found.accent = inherited(&Values::accent).value_or(found.accent);
  colors_ = found;
  return *colors_;
}

QColor ZelvoraTheme::secondaryText() const {
  if (const auto own = inherited(&Values::secondaryText)) return *own;
  const ThemeColors& own = colors();
  for (const double share : {0.4, 0.35, 0.3, 0.25, 0.2, 0.15, 0.1, 0.05}) {
    const QColor faint = mixed(own.text, own.background, share);
    if (std::min(contrast(faint, own.background), contrast(faint, own.surface)) >= 4.6)
      return faint;
  }
  return own.text;
}

QColor ZelvoraTheme::onAccent() const {
  const QColor ground = accent();
  return contrast(Qt::white, ground) >= 4.5 ? QColor(Qt::white) : readableOn(text(), ground, 4.5);
}

QColor ZelvoraTheme::accentText() const {
  const ThemeColors& own = colors();
  return readableOn(readableOn(own.accent, own.surface, 4.5), own.background, 4.5);
}

QColor ZelvoraTheme::edge() const {
  const ThemeColors& own = colors();
  for (const double share : {0.65, 0.6, 0.55, 0.5, 0.45, 0.4, 0.3}) {
    const QColor faint = mixed(own.text, own.surface, share);
    if (std::min(contrast(faint, own.surface), contrast(faint, own.background)) >= 3.05)
      return faint;
  }
  return own.text;
}

double ZelvoraTheme::textScale() const { return inherited(&Values::textScale).value_or(1.0); }

bool ZelvoraTheme::reducedMotion() const {
  return inherited(&Values::reducedMotion).value_or(false);
}

QUrl ZelvoraTheme::icons() const { return inherited(&Values::icons).value_or(QUrl()); }

}  // namespace zelvora
