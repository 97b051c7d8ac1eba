#include <ZelvoraSDK/ui/private/reveal.h>

#include <algorithm>

namespace zelvora {
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

}  // namespace zelvora
