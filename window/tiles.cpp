#include "window/tiles.h"

#include "window/pictures.h"

namespace bivouac {
namespace {

/// Tiles that show the same picture share it: Part(5) is Part(1), and Part(6) is Part(2).
constexpr FixedArray<int, kTiles> kPictureOf{{0, 1, 2, 3, 4, 1, 2, 7}};
constexpr int kThird = 180;  // The side of the small pictures.

/// Every picture is there a second time, a third as large: the large one is a megabyte, for cells that seldom
/// need it.
QImage Read(int picture, int side) {
  const QString path =
      side > kThird ? QStringLiteral("tiles/part%1.png") : QStringLiteral("tiles/third%1.png");
  return ReadPicture(path.arg(picture));
}

}  // namespace

const QPixmap& Tiles::At(int number, int side) {
  const int picture = kPictureOf[number];
  QPixmap& tile = tiles_[picture];
  if (tile.width() != side)
    tile = QPixmap::fromImage(
        Read(picture, side).scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
  return tile;
}

}  // namespace bivouac
