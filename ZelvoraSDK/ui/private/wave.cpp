#include <ZelvoraSDK/ui/private/wave.h>

#include <QtQuick/QQuickWindow>
#include <QtQuick/QSGRectangleNode>
#include <algorithm>
#include <cmath>

namespace zelvora {
namespace {

constexpr double kQuietest = -54, kLoudest = -6;  ///< Decibels.
constexpr double kRise = 0.035, kFall = 0.22;     ///< Seconds to come two thirds of the way.
constexpr double kBarEvery = 0.05;                ///< Seconds.
constexpr double kCalm = 0.25;                    ///< Seconds between pictures of reduced motion.
constexpr double kWidth = 3, kGap = 3;            ///< Points.

}  // namespace

double loudness(double level) {
  if (level <= 0) return 0;
  return std::clamp((20 * std::log10(level) - kQuietest) / (kLoudest - kQuietest), 0.0, 1.0);
}

double follow(double shown, double target, double seconds) {
  return target + (shown - target) * std::exp(-seconds / (target > shown ? kRise : kFall));
}

void Wave::Ticker::updateState(State now, State before) {
  QAbstractAnimation::updateState(now, before);
  last_ = 0;
}

void Wave::Ticker::updateCurrentTime(int now) {
  wave_.advance(std::max(0, now - last_) / 1000.0);
  last_ = now;
}

Wave::Wave(QQuickItem* parent) : QQuickItem(parent) {
  setFlag(ItemHasContents);
  connect(this, &Wave::colorChanged, this, &QQuickItem::update);
}

void Wave::setRunning(bool running) {
  if (running_ == running) return;
  running_ = running;
  settle();
  Q_EMIT runningChanged();
}

void Wave::setLevel(double level) {
  if (level_ == level) return;
  level_ = level;
  Q_EMIT levelChanged();
}

void Wave::itemChange(ItemChange change, const ItemChangeData& value) {
  QQuickItem::itemChange(change, value);
  if (change == ItemVisibleHasChanged || change == ItemSceneChange) settle();
}

void Wave::settle() {
  const bool moves = running_ && isVisible() && window();
  if (moves == (ticker_.state() == QAbstractAnimation::Running)) return;
  if (moves) {
    bars_.fill(0);
    shown_ = sinceBar_ = 0;
    ticker_.start();
  } else {
    ticker_.stop();
  }
  update();
}

void Wave::advance(double seconds) {
  shown_ = follow(shown_, loudness(level_), seconds);
  sinceBar_ += seconds;
  if (reducedMotion_) {
    if (sinceBar_ < kCalm) return;
    sinceBar_ = 0;
    bars_.fill(static_cast<float>(shown_));
  } else {
    for (; sinceBar_ >= kBarEvery; sinceBar_ -= kBarEvery)
      std::shift_right(bars_.begin(), bars_.end(), 1);
    bars_.front() = static_cast<float>(shown_);
  }
  update();
}

QSGNode* Wave::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
  if (!node) {
    node = new QSGNode;
    for (std::size_t bar = 0; bar < 2 * kBars - 1; ++bar)
      node->appendChildNode(window()->createRectangleNode());
  }
  const double middle = width() / 2;
  // Until the next bar is complete, all bars move towards their next places.
  const double moved = reducedMotion_ ? 0 : sinceBar_ / kBarEvery * (kWidth + kGap);
  int index = 0;
  for (QSGNode* child = node->firstChild(); child; child = child->nextSibling(), ++index) {
    const int place = index - static_cast<int>(kBars) + 1;
    const double away =
        place == 0
            ? 0
            : std::copysign(std::abs(place) * (kWidth + kGap) + moved - (kWidth + kGap), place);
    const double x = middle + (place == 0 ? 0 : away) - kWidth / 2;
    const double fade = std::clamp(1 - std::abs(away) / std::max(1.0, middle), 0.0, 1.0);
    const double size = kWidth + (height() - kWidth) *
                                     bars_[static_cast<std::size_t>(std::abs(place))] *
                                     (reducedMotion_ ? fade : 0.35 + 0.65 * fade);
    auto* rectangle = static_cast<QSGRectangleNode*>(child);
    const bool fits = x >= 0 && x + kWidth <= width();
    rectangle->setRect(fits ? QRectF(x, (height() - size) / 2, kWidth, size) : QRectF());
    QColor color = color_;
    color.setAlphaF(static_cast<float>(color_.alphaF() * (0.25 + 0.75 * fade)));
    rectangle->setColor(color);
  }
  return node;
}

}  // namespace zelvora
