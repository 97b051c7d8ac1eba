#pragma once

#include <QtCore/QByteArray>
#include <QtGui/QImage>
#include <string>
#include <vector>

namespace zelvora {

/// Pictures that browsers show one after another: a PNG file with the chunks of its animation.
class AnimatedPicture {
 public:
  /// Adds a picture, to be shown for `milliseconds`. All pictures have the same size.
  void add(const QImage& image, int milliseconds);
  /// Throws when the file can't be written.
  void save(const std::string& path) const;

 private:
  struct Frame {
    QByteArray data;  ///< Compressed, as in a still PNG.
    int milliseconds;
  };

  QByteArray header_;  ///< Of the still PNG, the same for all.
  std::vector<Frame> frames_;
  QImage last_;
};

}  // namespace zelvora
