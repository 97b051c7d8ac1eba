#pragma once

#include <ZelvoraSDK/ui/private/plate.h>

namespace zelvora {

/// The symbol of a pill, which also draws the pill's surface and puts everything in its place: the
/// symbol and the word in the button that contains both, and the stop button's place beside it.
/// Computing this in one item costs a tenth of what bindings would cost.
class PillFace : public zelvora::Plate {  // by its full name, as Qt's description of types wants it
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QQuickItem* word MEMBER word_ NOTIFY changed)
  /// Keeps its place while there is nothing in it, so that the pill does not jump.
  Q_PROPERTY(QQuickItem* stopPlace MEMBER stopPlace_ NOTIFY changed)

 public:
  explicit PillFace(QQuickItem* parent = nullptr);

  [[nodiscard]] QRectF ground() const override;

 protected:
  void componentComplete() override;
  void updatePolish() override;

 private:
  Q_SLOT void layOut();

  QPointer<QQuickItem> word_;
  QPointer<QQuickItem> stopPlace_;
};

}  // namespace zelvora
