// Where everything stands in a window of some size: from twips, the units of the layout, to pixels.
#pragma once

#include <algorithm>
#include <cmath>

#include "game/array.h"
#include "game/game_state.h"

namespace bivouac {

/// A length given in pixels of the window's opening size, such as a font's or a line's, in present pixels: at
/// least 1. `unit` is the present length of a pixel of the opening size.
inline int PixelsOf(double atOpeningSize, double unit) {
  return std::max(1, static_cast<int>(std::lround(atOpeningSize * unit)));
}

/// The same for the room around a text: rounded up, so that none is lost.
inline int MarginOf(double atOpeningSize, double unit) {
  return static_cast<int>(std::ceil(atOpeningSize * unit));
}

/// In whole pixels.
struct PixelRect {
  int Left = 0;
  int Top = 0;
  int Width = 0;
  int Height = 0;
};

/// One factor for both directions; what is left over in one of them lies in equal parts on both sides.
struct Scale {
  double Factor = 1.0 / kTwipsPerPixel;  ///< Logical pixels per twip.
  double Left = 0;                       ///< Of the layout's corner, logical pixels.
  double Top = 0;

  /// For a window whose inside has that size in logical pixels.
  static Scale ToFit(int width, int height);
  /// Edges are rounded one by one, so that controls that touch in twips touch in pixels.
  PixelRect Map(const Place& at) const;
  /// The present length of a pixel of the window's opening size.
  double Unit() const { return Factor * kTwipsPerPixel; }

  friend bool operator==(const Scale&, const Scale&) = default;
};

/// The edges of the cells of a board in device pixels: whole ones, also where a logical pixel is none, so
/// that tiles are copied as they are.
struct CellEdges {
  PixelRect Room;          ///< Of all cells together, logical pixels of the window.
  Array<int> Lefts, Tops;  ///< From the corner of Room, one more than there are cells in a line.
  int Side = 1;            ///< Of the stretched tiles.

  /// Requires: the cell lies on the board.
  PixelRect Cell(int index) const;
};

/// Requires: the grid shows a board of so many lines. `ratio` is how many device pixels a logical one has.
CellEdges EdgesOfCells(const Main& main, int size, const Scale& scale, double ratio);

/// The status bar at the foot of a window of that size, logical pixels.
PixelRect PlaceOfStatusBar(int width, int height, double unit);
/// The text of a panel, 0 to 5, from the corner of a bar of that size.
PixelRect PlaceOfPanel(int panel, int width, int height, double unit);

}  // namespace bivouac
