#include <ZelvoraSDK/ui/private/symbol.h>

#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

namespace zelvora {

Symbol::Symbol(QQuickItem* parent) : QQuickPaintedItem(parent) {}

void Symbol::setName(const QString& name) {
  if (name == name_) return;
  name_ = name;
  update();
  Q_EMIT nameChanged();
}

void Symbol::setColor(const QColor& color) {
  if (color == color_) return;
  color_ = color;
  update();
  Q_EMIT colorChanged();
}

void Symbol::paint(QPainter* painter) {
  // Read when it is drawn, not when it is made: that would be a third of what a view costs to make.
  QSvgRenderer(QStringLiteral(":/qt-project.org/imports/Zelvora/symbols/%1.svg").arg(name_))
      .render(painter, boundingRect());
  painter->setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter->fillRect(boundingRect(), color_);
}

}  // namespace zelvora
