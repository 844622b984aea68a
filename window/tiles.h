// The tile pictures, stretched to the size of a cell.
#pragma once

#include <QPixmap>

#include "game/array.h"

namespace bivouac {

inline constexpr int kTiles = 8;

/// Each picture is read and stretched when it is first asked for, and again when the size changes.
class Tiles {
 public:
  /// The tile of that number, 0 to 7, as a square of `side` device pixels.
  const QPixmap& At(int number, int side);

 private:
  FixedArray<QPixmap, kTiles> tiles_;
};

}  // namespace bivouac
