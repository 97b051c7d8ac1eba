#include <tests/ui/picture.h>

#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <algorithm>
#include <cmath>

namespace zelvora {
namespace {

/// The share of pixels that differ clearly in some channel.
double difference(const QImage& left, const QImage& right) {
  if (left.size() != right.size()) return 1;
  int differing = 0;
  for (int y = 0; y < left.height(); ++y) {
    for (int x = 0; x < left.width(); ++x) {
      const QColor a = left.pixelColor(x, y), b = right.pixelColor(x, y);
      const int most = std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                                 std::abs(a.blue() - b.blue())});
      differing += most > 40;
    }
  }
  return differing / (1.0 * left.width() * left.height());
}

TEST(Pictures, LookAsTheDocumentationShowsThem) {
  for (const Picture& picture : pictures()) {
    const QString path =
        QStringLiteral(ZELVORA_SOURCE_DIR "/docs/pictures/%1.png").arg(picture.name);
    const QImage shown(path);
    ASSERT_FALSE(shown.isNull()) << qPrintable(path);
    const QImage found = render(picture);
    // Another build of the font library shifts the edges of letters a little.
    const double share = difference(found, shown);
    EXPECT_LT(share, 0.004) << qPrintable(picture.name);
    if (share < 0.004) continue;
    const QString kept = QDir::temp().filePath(picture.name + QStringLiteral("-found.png"));
    found.save(kept);
    ADD_FAILURE() << "what was drawn is in " << qPrintable(kept)
                  << "; `./dev pictures` takes it over when it is meant";
  }
}

TEST(Pictures, AreTheSameAtEveryPixelRatio) {
  for (const Picture& picture : pictures()) {
    const QImage plain = render(picture, 1);
    const QImage fine = render(picture, 3);
    EXPECT_EQ(fine.size(), picture.size * 3);
    const QImage shrunk =
        fine.scaled(plain.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    EXPECT_LT(difference(plain, shrunk), 0.02) << qPrintable(picture.name);
  }
}

}  // namespace
}  // namespace zelvora
