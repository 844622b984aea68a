#include "window/tiles.h"

namespace bivouac {
namespace {

/// Tiles that show the same picture share it: Part(5) is Part(1), and Part(6) is Part(2).
constexpr FixedArray<int, kTiles> kPictureOf{{0, 1, 2, 3, 4, 1, 2, 7}};

QImage Read(int picture) {
  return QImage(QStringLiteral(":/tiles/part%1.png").arg(picture), kPictureFormat);
}

}  // namespace

Tiles::Tiles() : open_(std::async(std::launch::async, Read, 0)) {}

const QPixmap& Tiles::At(int number, int side) {
  const int picture = kPictureOf[number];
  Tile& tile = tiles_[picture];
  if (tile.Stretched.width() != side) {
    const bool resized = !tile.Stretched.isNull();
    if (tile.Original.isNull()) tile.Original = picture == 0 && open_.valid() ? open_.get() : Read(picture);
    tile.Stretched =
        QPixmap::fromImage(tile.Original.scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    // A megabyte each, for a window that mostly keeps its size.
    if (!resized) tile.Original = {};
  }
  return tile.Stretched;
}

}  // namespace bivouac
