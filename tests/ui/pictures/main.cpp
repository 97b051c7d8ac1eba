// Writes the pictures of docs/views.md into the folder given.

#include <QtCore/QDir>
#include <QtGui/QFont>
#include <QtGui/QGuiApplication>
#include <cstdio>

#include <tests/ui/picture.h>

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_QUICK_BACKEND", "software");
  const QGuiApplication application(argc, argv);
  QGuiApplication::setFont(QFont(QStringLiteral("Inter")));
  const QDir folder(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("."));
  const bool one = argc > 2;
  for (const zelvora::Picture& picture : zelvora::pictures()) {
    if (one && !picture.name.startsWith(QString::fromLocal8Bit(argv[2]))) continue;
    const QString path = folder.filePath(picture.name + QStringLiteral(".png"));
    if (!zelvora::render(picture).save(path)) {
      std::fprintf(stderr, "can't write %s\n", qPrintable(path));
      return 1;
    }
  }
}
