#include <tests/ui/stage.h>

#include <QtQml/QQmlComponent>
#include <QtQuick/QQuickRenderTarget>
#include <stdexcept>

namespace zelvora {

Stage::Stage(const QByteArray& qml, QSize size) : window_(&control_) {
  QQmlComponent component(&engine_);
  component.setData(qml, QUrl(QStringLiteral("stage.qml")));
  root_.reset(qobject_cast<QQuickItem*>(component.create()));
  if (!root_) throw std::runtime_error(qPrintable(component.errorString()));
  root_->setSize(size);
  root_->setParentItem(window_.contentItem());
  window_.contentItem()->setSize(size);
  window_.setGeometry(QRect(QPoint(), size));
}

QImage Stage::draw(double pixelRatio) {
  image_ = QImage(window_.size() * pixelRatio, QImage::Format_ARGB32_Premultiplied);
  image_.setDevicePixelRatio(pixelRatio);
  image_.fill(Qt::transparent);
  QQuickRenderTarget target = QQuickRenderTarget::fromPaintDevice(&image_);
  target.setDevicePixelRatio(pixelRatio);
  window_.setRenderTarget(target);
  redraw();
  return image_;
}

void Stage::redraw() {
  control_.polishItems();
  control_.beginFrame();
  control_.sync();
  control_.render();
  control_.endFrame();
}

}  // namespace zelvora
