#include "events/places.h"

namespace bivouac {

Scale Scale::ToFit(int width, int height) {
  Scale scale;
  scale.Factor =
      std::min(static_cast<double>(width) / kWindowWidth, static_cast<double>(height) / kWindowHeight);
  scale.Left = (width - kWindowWidth * scale.Factor) / 2;
  scale.Top = (height - kWindowHeight * scale.Factor) / 2;
  return scale;
}

PixelRect Scale::Map(const Place& at) const {
  const int left = static_cast<int>(std::lround(Left + at.Left * Factor));
  const int top = static_cast<int>(std::lround(Top + at.Top * Factor));
  const int right = static_cast<int>(std::lround(Left + (at.Left + at.Width) * Factor));
  const int bottom = static_cast<int>(std::lround(Top + (at.Top + at.Height) * Factor));
  return {left, top, right - left, bottom - top};
}

PixelRect CellEdges::Cell(int index) const {
  const int size = Lefts.Upper();
  const int row = index / size;
  const int col = index % size;
  return {Lefts[col], Tops[row], Lefts[col + 1] - Lefts[col], Tops[row + 1] - Tops[row]};
}

CellEdges EdgesOfCells(const Main& main, int size, const Scale& scale, double ratio) {
  const Place first = main.Grid[0].At;
  const Place last = main.Grid[size * size - 1].At;
  CellEdges edges;
  edges.Room = scale.Map(
      {first.Left, first.Top, last.Left + last.Width - first.Left, last.Top + last.Height - first.Top});
  const double factor = scale.Factor * ratio;
  // `origin` is the layout's corner in the window and `corner` the board's, both in logical pixels.
  const auto edge = [&](int twips, double origin, int corner) {
    const double at = origin * ratio + twips * factor - std::round(corner * ratio);
    return std::max(0, static_cast<int>(std::lround(at)));
  };
  edges.Lefts.Redim(size);
  edges.Tops.Redim(size);
  edges.Side = std::max(1, static_cast<int>(std::lround(first.Width * factor)));
  for (int line = 0; line < size; ++line) {
    edges.Lefts[line] = edge(main.Grid[line].At.Left, scale.Left, edges.Room.Left);
    edges.Tops[line] = edge(main.Grid[line * size].At.Top, scale.Top, edges.Room.Top);
    if (line == 0) continue;
    edges.Side = std::max(
        {edges.Side, edges.Lefts[line] - edges.Lefts[line - 1], edges.Tops[line] - edges.Tops[line - 1]});
  }
  edges.Lefts[size] = edges.Lefts[size - 1] + edges.Side;
  edges.Tops[size] = edges.Tops[size - 1] + edges.Side;
  return edges;
}

PixelRect PlaceOfStatusBar(int width, int height, double unit) {
  const int bar = PixelsOf(static_cast<double>(kStatusBarHeight) / kTwipsPerPixel, unit);
  return {0, height - bar, width, bar};
}

PixelRect PlaceOfPanel(int panel, int width, int height, double unit) {
  const int gap = MarginOf(4, unit);
  int before = 0;
  for (const PanelRow& row : PanelTable().first(static_cast<std::size_t>(panel))) before += row.Width;
  const int left = width * before / kPanelWidths;
  const int right = width * (before + PanelTable()[static_cast<std::size_t>(panel)].Width) / kPanelWidths;
  return {left + gap, 1, right - left - gap - gap / 2, height - 1};
}

}  // namespace bivouac
