#pragma once

#include <QtCore/QAbstractAnimation>
#include <QtGui/QColor>
#include <QtQuick/QQuickItem>
#include <array>

namespace zelvora {

/// The height of a microphone's level on a wave: 0 for 54 dB below full scale and less, 1 for 6 dB
/// below it and more.
[[nodiscard]] double loudness(double level);
/// What is shown `seconds` after `shown` when `target` is heard: it rises fast and falls slowly.
[[nodiscard]] double follow(double shown, double target, double seconds);

/// Bars that follow a microphone's level, the newest in the middle. Asks for frames only while it
/// runs.
class Wave : public QQuickItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(bool running READ running WRITE setRunning NOTIFY runningChanged)
  /// Of the microphone, 1 for full scale.
  Q_PROPERTY(double level READ level WRITE setLevel NOTIFY levelChanged)
  Q_PROPERTY(QColor color MEMBER color_ NOTIFY colorChanged)
  /// If on, the bars grow and shrink in place, four times a second.
  Q_PROPERTY(bool reducedMotion MEMBER reducedMotion_ NOTIFY reducedMotionChanged)

 public:
  explicit Wave(QQuickItem* parent = nullptr);

  [[nodiscard]] bool running() const { return running_; }
  void setRunning(bool running);
  [[nodiscard]] double level() const { return level_; }
  void setLevel(double level);

  /// Lets time pass.
  void advance(double seconds);

 Q_SIGNALS:
  void runningChanged();
  void levelChanged();
  void colorChanged();
  void reducedMotionChanged();

 protected:
  QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
  void itemChange(ItemChange change, const ItemChangeData& value) override;

 private:
  class Ticker final : public QAbstractAnimation {
   public:
    explicit Ticker(Wave& wave) : wave_(wave) {}
    [[nodiscard]] int duration() const override { return -1; }

   protected:
    void updateCurrentTime(int now) override;
    void updateState(State now, State before) override;

   private:
    Wave& wave_;
    int last_ = 0;
  };

  static constexpr std::size_t kBars = 32;  ///< On each side of the middle.

  void settle();

  Ticker ticker_{*this};
  bool running_ = false;
  double level_ = 0;
  QColor color_ = Qt::black;
  bool reducedMotion_ = false;
  double shown_ = 0;
  double sinceBar_ = 0;
  std::array<float, kBars> bars_{};  ///< From the newest to the oldest.
};

}  // namespace zelvora
