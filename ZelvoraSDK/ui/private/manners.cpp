#include <ZelvoraSDK/ui/private/manners.h>

#include <QtGui/QKeyEvent>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <algorithm>

namespace zelvora {

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
  connect(button_, SIGNAL(visualFocusChanged()), this, SLOT(showFocus()));
}

bool Manners::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
  const auto* key = static_cast<QKeyEvent*>(event);
  if (key->key() != Qt::Key_Return && key->key() != Qt::Key_Enter) return false;
  event->accept();
  if (!key->isAutoRepeat() && button_->isEnabled()) QMetaObject::invokeMethod(button_, "clicked");
  return true;
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
  const bool stays = wanted_ && component_ && component_ == made_;
  if (item_ && !stays) {
    item_->setParentItem(nullptr);
    item_->deleteLater();
    item_ = nullptr;
    Q_EMIT itemChanged();
  }
  if (!wanted_ || !component_ || item_) return;
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

}  // namespace zelvora
