#include <tests/ui/animation_clock.h>

#include <QtCore/QCoreApplication>
#include <algorithm>

namespace zelvora {

void AnimationClock::pass(qint64 milliseconds, qint64 frame) {
  for (const qint64 end = now_ + milliseconds; now_ < end;) {
    // An animation starts from the event loop.
    QCoreApplication::processEvents();
    now_ += std::min(frame, end - now_);
    advance();
  }
  QCoreApplication::processEvents();
}

void AnimationClock::start() {
  start_ = now_;
  QAnimationDriver::start();
}

}  // namespace zelvora
