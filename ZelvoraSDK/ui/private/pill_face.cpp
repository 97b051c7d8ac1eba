#include <ZelvoraSDK/ui/private/pill_face.h>

#include <QtCore/QMetaMethod>
#include <QtCore/QMetaProperty>
#include <algorithm>
#include <cmath>

namespace zelvora {
namespace {

constexpr double kSymbol = 28, kMargin = 14, kEnds = 12, kGap = 10, kStop = 29;

}  // namespace

PillFace::PillFace(QQuickItem* parent) : Plate(parent) { setSize({kSymbol, kSymbol}); }

void PillFace::componentComplete() {
  Plate::componentComplete();
  const QQuickItem* pill = parentItem();
  QQuickItem* whole = pill ? pill->parentItem() : nullptr;
  if (!whole || !word_ || !stopPlace_) return;
  connect(word_, &QQuickItem::implicitWidthChanged, this, &PillFace::layOut);
  connect(word_, &QQuickItem::implicitHeightChanged, this, &PillFace::layOut);
  connect(whole, &QQuickItem::widthChanged, this, &PillFace::layOut);
  connect(whole, &QQuickItem::heightChanged, this, &PillFace::layOut);
  static const QMetaMethod layOut =
      staticMetaObject.method(staticMetaObject.indexOfMethod("layOut()"));
  static const int mirrored = pill->metaObject()->indexOfProperty("mirrored");
  connect(pill, pill->metaObject()->property(mirrored).notifySignal(), this, layOut);
  this->layOut();
}

void PillFace::layOut() {
  QQuickItem& pill = *parentItem();
  QQuickItem& whole = *pill.parentItem();
  const double width = kMargin + kSymbol + kGap + word_->implicitWidth() + kMargin;
  const double height = kEnds + std::max(kSymbol, word_->implicitHeight()) + kEnds;
  pill.setImplicitWidth(width);
  pill.setImplicitHeight(height);
  whole.setImplicitWidth(width + kGap + kStop);
  whole.setImplicitHeight(height);

  static const int mirrored = pill.metaObject()->indexOfProperty("mirrored");
  const bool isMirrored = pill.metaObject()->property(mirrored).read(&pill).toBool();
  const auto middle = [](double around, double size) { return std::floor((around - size) / 2); };
  pill.setPosition({isMirrored ? whole.width() - width : 0, middle(whole.height(), height)});
  setPosition({isMirrored ? width - kMargin - kSymbol : kMargin, (height - kSymbol) / 2});
  word_->setPosition(
      {isMirrored ? kMargin : kMargin + kSymbol + kGap, middle(height, word_->implicitHeight())});
  stopPlace_->setPosition({isMirrored ? whole.width() - width - kGap - kStop : width + kGap,
                           middle(whole.height(), kStop)});
  Q_EMIT changed();
}

void PillFace::updatePolish() {
  Plate::updatePolish();
  if (word_ && theme()) word_->setProperty("color", theme()->text());
}

QRectF PillFace::ground() const {
  const QQuickItem* pill = parentItem();
  return pill ? QRectF(-x(), -y(), pill->width(), pill->height()) : QRectF();
}

}  // namespace zelvora
