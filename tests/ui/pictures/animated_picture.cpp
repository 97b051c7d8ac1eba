#include <tests/ui/pictures/animated_picture.h>

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtCore/QtEndian>
#include <array>
#include <stdexcept>

namespace zelvora {
namespace {

quint32 checksum(const QByteArray& bytes) {
  quint32 sum = 0xffffffff;
  for (const char byte : bytes) {
    sum ^= static_cast<quint8>(byte);
    for (int bit = 0; bit < 8; ++bit) sum = (sum >> 1) ^ (sum & 1 ? 0xedb88320 : 0);
  }
  return sum ^ 0xffffffff;
}

template <class Number>
QByteArray bigEndian(Number number) {
  QByteArray bytes(sizeof number, '\0');
  qToBigEndian(number, bytes.data());
  return bytes;
}

QByteArray chunk(const char* name, const QByteArray& data) {
  const QByteArray named = QByteArray(name) + data;
  return bigEndian(static_cast<quint32>(data.size())) + named + bigEndian(checksum(named));
}

/// The data of all chunks of that name in a PNG file.
QByteArray chunks(const QByteArray& file, const char* name) {
  QByteArray found;
  for (qsizetype at = 8; at + 12 <= file.size();) {
    const auto size = static_cast<qsizetype>(qFromBigEndian<quint32>(file.constData() + at));
    if (file.mid(at + 4, 4) == name) found += file.mid(at + 8, size);
    at += 12 + size;
  }
  return found;
}

}  // namespace

void AnimatedPicture::add(const QImage& image, int milliseconds) {
  if (!frames_.empty() && image == last_) {  // the same picture, shown longer
    frames_.back().milliseconds += milliseconds;
    return;
  }
  last_ = image;
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  image.convertToFormat(QImage::Format_RGB888).save(&buffer, "PNG");
  if (header_.isEmpty()) header_ = chunks(buffer.data(), "IHDR");
  frames_.push_back({chunks(buffer.data(), "IDAT"), milliseconds});
}

void AnimatedPicture::save(const std::string& path) const {
  QByteArray file =
      QByteArray("\x89PNG\r\n\x1a\n", 8) + chunk("IHDR", header_) +
      chunk("acTL", bigEndian(static_cast<quint32>(frames_.size())) + bigEndian<quint32>(0));
  quint32 number = 0;
  for (const Frame& frame : frames_) {
    const bool first = number == 0;
    file += chunk("fcTL", bigEndian(number++) + header_.left(8) + bigEndian<quint32>(0) +
                              bigEndian<quint32>(0) +
                              bigEndian(static_cast<quint16>(frame.milliseconds)) +
                              bigEndian<quint16>(1000) + QByteArray(2, '\0'));
    file += first ? chunk("IDAT", frame.data) : chunk("fdAT", bigEndian(number++) + frame.data);
  }
  file += chunk("IEND", {});
  QFile written(QString::fromStdString(path));
  if (!written.open(QIODevice::WriteOnly) || written.write(file) != file.size())
    throw std::runtime_error("can't write " + path);
}

}  // namespace zelvora
