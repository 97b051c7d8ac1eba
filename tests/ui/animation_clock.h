#pragma once

#include <QtCore/QAnimationDriver>

namespace zelvora {

/// Animation time that passes only when a test says so. Make it before the scene.
class AnimationClock : public QAnimationDriver {
 public:
  AnimationClock() { install(); }
  ~AnimationClock() override { uninstall(); }

  /// Lets this much time pass, in frames of `frame` milliseconds.
  void pass(qint64 milliseconds, qint64 frame = 15);

  void advance() override { advanceAnimation(); }
  /// Since the first running animation began.
  [[nodiscard]] qint64 elapsed() const override { return now_ - start_; }

 protected:
  void start() override;

 private:
  qint64 now_ = 0;
  qint64 start_ = 0;
};

}  // namespace zelvora
