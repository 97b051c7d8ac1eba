#pragma once

#include <QtQuick/QQuickItem>

namespace zelvora {

/// The edges of the window that a notch or a bar of the system covers, in points. Qt reports them
/// from version 6.9 on; before, all are 0 and the application sets them.
class Insets : public QQuickItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(double leftEdge READ left NOTIFY changed)
  Q_PROPERTY(double topEdge READ top NOTIFY changed)
  Q_PROPERTY(double rightEdge READ right NOTIFY changed)
  Q_PROPERTY(double bottomEdge READ bottom NOTIFY changed)
  /// Of the keyboard on the screen, while it is shown.
  Q_PROPERTY(double keyboard READ keyboard NOTIFY keyboardChanged)

 public:
  explicit Insets(QQuickItem* parent = nullptr);

  [[nodiscard]] double left() const { return margins_.left(); }
  [[nodiscard]] double top() const { return margins_.top(); }
  [[nodiscard]] double right() const { return margins_.right(); }
  [[nodiscard]] double bottom() const { return margins_.bottom(); }
  [[nodiscard]] double keyboard() const;

 Q_SIGNALS:
  void changed();
  void keyboardChanged();

 protected:
  void itemChange(ItemChange change, const ItemChangeData& value) override;

 private:
  QMarginsF margins_;
};

}  // namespace zelvora
