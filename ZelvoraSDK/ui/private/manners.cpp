#include <ZelvoraSDK/ui/private/manners.h>

#include <QtCore/QMetaMethod>
#include <QtCore/QMetaProperty>
#include <QtGui/QGuiApplication>
#include <QtGui/QInputMethod>
#include <QtGui/QKeyEvent>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlProperty>
#include <QtQuick/QQuickWindow>

#include <algorithm>

namespace zelvora {

Manners::Manners(QObject* parent) : QObject(parent) {
  QAccessible::installActivationObserver(this);
}

Manners::~Manners() { QAccessible::removeActivationObserver(this); }

bool Manners::contains(const QPointF& point) const {
  const double sides = std::max(0.0, (44 - button_->width()) / 2);
  const double ends = std::max(0.0, (44 - button_->height()) / 2);
  return point.x() >= -sides && point.x() <= button_->width() + sides && point.y() >= -ends &&
         point.y() <= button_->height() + ends;
}

void Manners::componentComplete() {
  button_ = qobject_cast<QQuickItem*>(parent());
  if (!button_) return;
  button_->setContainmentMask(this);
  button_->installEventFilter(this);
  // Looked up once, to keep buttons cheap.
  static const QMetaMethod showFocus =
      staticMetaObject.method(staticMetaObject.indexOfMethod("showFocus()"));
  const QMetaObject& kind = *button_->metaObject();
  static const int visualFocus = kind.indexOfProperty("visualFocus");
  connect(button_, kind.property(visualFocus).notifySignal(), this, showFocus);
  if (QAccessible::isActive()) accessibilityActiveChanged(true);
}

bool Manners::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
  const auto* key = static_cast<QKeyEvent*>(event);
  if (key->key() != Qt::Key_Return && key->key() != Qt::Key_Enter) return false;
  event->accept();
  if (!key->isAutoRepeat()) press();
  return true;
}

/// Only where a screen reader listens: what it needs costs as much as the button itself.
void Manners::accessibilityActiveChanged(bool active) {
  if (!active || voice_ || !button_) return;
  const QQmlProperty name(button_, QStringLiteral("Accessible.name"), qmlContext(this));
  voice_ = name.object();
  if (!voice_) return;
  connect(voice_, SIGNAL(pressAction()), this, SLOT(press()));
  connect(button_, SIGNAL(textChanged()), this, SLOT(passNameOn()));
  passNameOn();
}

void Manners::passNameOn() { voice_->setProperty("name", button_->property("text")); }

void Manners::press() {
  if (button_->isEnabled()) QMetaObject::invokeMethod(button_, "clicked");
}

void Manners::showFocus() {
  if (!button_->property("visualFocus").toBool()) {
    delete ring_;
    ring_ = nullptr;
    return;
  }
  QQmlEngine* engine = qmlEngine(button_);
  if (ring_ || !engine) return;
  QQmlComponent component(
      engine, QUrl(QStringLiteral("qrc:/qt-project.org/imports/Zelvora/Private/FocusRing.qml")));
  QObject* made = component.createWithInitialProperties(
      {{QStringLiteral("button"), QVariant::fromValue(button_)},
       {QStringLiteral("manners"), QVariant::fromValue(this)},
       {QStringLiteral("parent"), QVariant::fromValue(button_)}},
      qmlContext(button_));
  ring_ = qobject_cast<QQuickItem*>(made);
  if (ring_) ring_->QObject::setParent(button_);
}

void OnDemand::componentComplete() {
  connect(this, &OnDemand::changed, this, &OnDemand::settle);
  settle();
}

void OnDemand::settle() {
  const bool isWanted = wanted_ && component_ && state_ == shownIn_;
  const bool stays = isWanted && component_ == made_;
  if (item_ && !stays) {
    item_->setParentItem(nullptr);
    item_->deleteLater();
    item_ = nullptr;
    Q_EMIT itemChanged();
  }
  if (!isWanted || item_) return;
  auto* holder = qobject_cast<QQuickItem*>(parent());
  QObject* object = component_->beginCreate(component_->creationContext());
  item_ = qobject_cast<QQuickItem*>(object);
  made_ = component_;
  if (item_) {
    item_->QObject::setParent(this);
    item_->setParentItem(holder);
  }
  component_->completeCreate();
  Q_EMIT itemChanged();
}

namespace {

constexpr double kMargin = 8;  ///< Points that stay free for the focus ring.

void scroll(QQuickItem& flickable, const QRectF& place) {
  const double height = flickable.height();
  const double top = place.top() - kMargin, bottom = place.bottom() + kMargin;
  double at = flickable.property("contentY").toDouble();
  if (bottom > at + height) at = bottom - height;
  at = std::min(at, top);
  const double origin = flickable.property("originY").toDouble();
  const double end = origin + flickable.property("contentHeight").toDouble() - height;
  flickable.setProperty("contentY", std::clamp(at, origin, std::max(origin, end)));
}

}  // namespace

void Reveal::show(QQuickItem* item) {
  if (!item) return;
  for (QQuickItem* at = item->parentItem(); at; at = at->parentItem()) {
    auto* content = at->property("contentItem").value<QQuickItem*>();
    if (!content || !at->inherits("QQuickFlickable")) continue;
    scroll(*at, item->mapRectToItem(content, QRectF(0, 0, item->width(), item->height())));
  }
}

Insets::Insets(QQuickItem* parent) : QQuickItem(parent) {
  const QInputMethod* method = QGuiApplication::inputMethod();
  connect(method, &QInputMethod::visibleChanged, this, &Insets::keyboardChanged);
  connect(method, &QInputMethod::keyboardRectangleChanged, this, &Insets::keyboardChanged);
}

double Insets::keyboard() const {
  const QInputMethod* method = QGuiApplication::inputMethod();
  return method->isVisible() ? method->keyboardRectangle().height() : 0;
}

void Insets::itemChange(ItemChange change, const ItemChangeData& value) {
  QQuickItem::itemChange(change, value);
#if QT_VERSION >= QT_VERSION_CHECK(6, 9, 0)
  // Untried: this project is built with Qt 6.4.
  if (change != ItemSceneChange || !value.window) return;
  const auto take = [this](const QMargins& margins) {
    margins_ = margins;
    Q_EMIT changed();
  };
  connect(value.window, &QWindow::safeAreaMarginsChanged, this, take);
  take(value.window->safeAreaMargins());
#endif
}

}  // namespace zelvora
