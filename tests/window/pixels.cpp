#include "tests/window/pixels.h"

#include <cmath>
#include <map>
#include <tuple>

namespace bivouac {

double Difference(const QImage& one, const QImage& other) {
  if (one.size() != other.size() || one.isNull()) return 255;
  double sum = 0;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) {
      const QRgb a = one.pixel(x, y);
      const QRgb b = other.pixel(x, y);
      sum += std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) + std::abs(qBlue(a) - qBlue(b));
    }
  }
  return sum / 3 / one.width() / one.height();
}

QRect DifferentIn(const QImage& one, const QImage& other) {
  if (one.size() != other.size()) return one.rect() | other.rect();
  QRect around;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) {
      if ((one.pixel(x, y) & RGB_MASK) != (other.pixel(x, y) & RGB_MASK)) around |= QRect(x, y, 1, 1);
    }
  }
  return around;
}

const QImage& Asset(const QString& name, QSize size) {
  static std::map<QString, QImage> originals;
  static std::map<std::tuple<QString, int, int>, QImage> pictures;
  QImage& original = originals[name];
  if (original.isNull()) original.load(BIVOUAC_SOURCE_DIR "/assets/tiles/" + name + ".png");
  QImage& picture = pictures[{name, size.width(), size.height()}];
  if (picture.isNull()) picture = original.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  return picture;
}

std::pair<int, double> ClosestTile(const QImage& painted, QSize field) {
  const QPoint edge((field.width() - painted.width()) / 2, (field.height() - painted.height()) / 2);
  std::pair<int, double> closest{-1, 256};
  for (const int tile : {0, 1, 2, 3, 4, 7}) {
    const QImage whole = Asset("part" + QString::number(tile), field);
    const double difference = Difference(painted, whole.copy(QRect(edge, painted.size())));
    if (difference < closest.second) closest = {tile, difference};
  }
  return closest;
}

}  // namespace bivouac
