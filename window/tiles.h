// The tile pictures, stretched to the size of a cell.
#pragma once

#include <QImage>
#include <QPixmap>
#include <future>

#include "game/array.h"

namespace bivouac {

inline constexpr int kTiles = 8;
/// Of every picture in the program. Where it is not named, Qt loads all its plugins and asks each.
inline constexpr const char* kPictureFormat = "PNG";

/// Each picture is read and stretched when it is first asked for, and stretched anew when the size changes.
/// The open field, which the first frame shows, is read in the background from the beginning.
class Tiles {
 public:
  Tiles();
  /// The tile of that number, 0 to 7, as a square of `side` device pixels.
  const QPixmap& At(int number, int side);

 private:
  struct Tile {
    QImage Original;
    QPixmap Stretched;
  };
  FixedArray<Tile, kTiles> tiles_;
  std::future<QImage> open_;
};

}  // namespace bivouac
