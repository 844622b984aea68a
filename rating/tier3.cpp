#include <algorithm>

#include "rating/passes.h"
#include "rating/sweep.h"

namespace bivouac {
namespace {

// The shared field X touches exactly two trees, T1 and T2, in the order north, west, east, south of X.

/// A tree and its open neighbours.
struct Competitor {
  int Cell;
  int Options = 0;
  std::array<bool, 5> Open{};  // By direction.

  bool IsOpen(int direction) const { return Open[static_cast<std::size_t>(direction)]; }
};

Competitor CompetitorAt(const Rater& rater, int tree) {
  Competitor competitor{tree};
  const int row = tree / rater.size;
  const int col = tree % rater.size;
  const Sides open = SidesOf(rater.rows.lines, CELL_OPEN, row);
  const std::array<Positions, 4> sides{open.North, open.East, open.South, open.West};
  for (std::size_t i = 0; i < sides.size(); ++i) {
    if (!Has(sides[i], col)) continue;
    competitor.Open[i + 1] = true;
    ++competitor.Options;
  }
  return competitor;
}

bool Tents(Rater& rater, int first, int second) {
  rater.Set(first, CELL_TENT);
  rater.Set(second, CELL_TENT);
  SweepTentNeighbours(rater);
  return true;
}

bool Tent(Rater& rater, int cell) {
  return Tents(rater, cell, cell);
}

template <std::size_t Count>
bool Grass(Rater& rater, const std::array<int, Count>& fields) {
  bool found = false;
  for (const int field : fields) found = rater.GrassIfOpen(field) || found;
  return found;
}

/// X lies between T1 and T2. `far1` is the direction from X to T1 and on; a tree that has its option there
/// cannot take X if the other has none.
bool SharedInLine(Rater& rater, const Competitor& t1, int far1, const Competitor& t2, int far2) {
  if (t1.IsOpen(far1) == t2.IsOpen(far2)) return false;
  const bool first = t1.IsOpen(far1);
  const Competitor& tree = first ? t1 : t2;
  const int far = first ? far1 : far2;
  if (tree.Options != 3) return Tent(rater, tree.Cell + rater.Step(far));
  const bool inRow = far == EAST || far == WEST;
  const int side = inRow ? (tree.IsOpen(NORTH) ? NORTH : SOUTH) : (tree.IsOpen(EAST) ? EAST : WEST);
  return rater.GrassIfOpen(tree.Cell + rater.Step(far) + rater.Step(side));
}

/// The options besides X of two trees that stand diagonally, when the other field that touches both is not
/// open: near touches X, far does not.
struct DiagonalRow {
  int ToFirst;  ///< Direction from X to T1, to T2.
  int ToSecond;
  int Near1, Far1;
  int Near2, Far2;
};
constexpr std::array<DiagonalRow, 4> kDiagonal{{
    {WEST, SOUTH, NORTH, WEST, EAST, SOUTH},
    {NORTH, EAST, WEST, NORTH, SOUTH, EAST},
    {EAST, SOUTH, NORTH, EAST, WEST, SOUTH},
    {NORTH, WEST, EAST, NORTH, SOUTH, WEST},
}};

bool OneCommonField(Rater& rater, int toFirst, const Competitor& t1, int toSecond, const Competitor& t2) {
  if (t1.Options + t2.Options != 4) return false;
  const auto* row = std::find_if(kDiagonal.begin(), kDiagonal.end(), [&](const DiagonalRow& it) {
    return it.ToFirst == toFirst && it.ToSecond == toSecond;
  });
  const bool near1 = t1.IsOpen(row->Near1);
  const bool near2 = t2.IsOpen(row->Near2);
  const int other1 = t1.Cell + rater.Step(near1 ? row->Near1 : row->Far1);
  const int other2 = t2.Cell + rater.Step(near2 ? row->Near2 : row->Far2);
  if (near1 && near2) return Tents(rater, other1, other2);
  if (near1) return Tent(rater, other2);
  if (near2) return Tent(rater, other1);
  return false;
}

/// Both fields that touch T1 and T2 are open. One tree will use one of them, and they touch, so the other
/// tree must use an option of its own.
bool TwoCommonFields(Rater& rater, const Competitor& t1, const Competitor& t2, bool downRight) {
  const int n = rater.size;
  const int a = t1.Cell;
  const int b = t2.Cell;
  if (t1.Options == 4) return Grass<3>(rater, {a - n - 1, a - n + 1, downRight ? a + n - 1 : a + n + 1});
  if (t2.Options == 4) {
    // Down-left takes fields around T1, though T2 has the four options, and without a test of the edge.
    return downRight ? Grass<3>(rater, {b - n + 1, b + n - 1, b + n + 1})
                     : Grass<3>(rater, {a - n - 1, a + n - 1, a + n + 1});
  }
  const bool north = t1.IsOpen(NORTH);
  if (t1.Options == 3 && t2.Options == 3) {
    if (downRight) {
      return north ? Grass<2>(rater, {a - n + 1, b + n - 1}) : Grass<2>(rater, {a + n - 1, b - n + 1});
    }
    return north ? Grass<2>(rater, {a - n - 1, b + n + 1}) : Grass<2>(rater, {a + n + 1, b - n - 1});
  }
  if (t1.Options == 3) return north ? Tents(rater, a - n, a + n) : Tents(rater, a - 1, a + 1);
  return t2.IsOpen(downRight ? EAST : WEST) ? Tents(rater, b - 1, b + 1) : Tents(rater, b - n, b + n);
}

bool SharedDiagonally(Rater& rater, int toFirst, const Competitor& t1, int toSecond, const Competitor& t2) {
  const bool downRight = t2.Cell - t1.Cell > rater.size;
  const bool bothOpen = t1.IsOpen(SOUTH) && t1.IsOpen(downRight ? EAST : WEST);
  return bothOpen ? TwoCommonFields(rater, t1, t2, downRight)
                  : OneCommonField(rater, toFirst, t1, toSecond, t2);
}

bool SharedAt(Rater& rater, int x, const Sides& trees) {
  const int col = x % rater.size;
  const int toFirst = Has(trees.North, col) ? NORTH : Has(trees.West, col) ? WEST : EAST;
  const int toSecond = Has(trees.South, col) ? SOUTH : Has(trees.East, col) ? EAST : WEST;
  const Competitor t1 = CompetitorAt(rater, x + rater.Step(toFirst));
  const Competitor t2 = CompetitorAt(rater, x + rater.Step(toSecond));
  const bool opposite = rater.Step(toFirst) + rater.Step(toSecond) == 0;
  if (opposite) {
    const bool applies = t1.Options != 4 && t2.Options != 4;
    return applies && SharedInLine(rater, t1, toFirst, t2, toSecond);
  }
  return t1.Options + t2.Options < 7 && SharedDiagonally(rater, toFirst, t1, toSecond, t2);
}

bool LastTent(Rater& rater, const LineView& view) {
  const Lines& lines = view.lines;
  for (int line = 0; line < rater.size; ++line) {
    if (view.Need(line) != view.Tents(line) + 1) continue;
    // Unlike the pinched passes, only tents count, open fields do not.
    const Positions trees = lines.Trees(line) & ~(lines.Tents(line - 1) | lines.Tents(line + 1));
    const Positions before = trees & ~WithBefore(lines.Tents(line));
    const Positions behind = trees & ~WithBehind(lines.Tents(line));
    const Positions between = lines.Open(line) & WithBefore(before) & WithBehind(behind);
    if (between == 0) continue;
    rater.Set(lines.axis.At(line, std::countr_zero(between)), CELL_GRASS);
    return true;
  }
  return false;
}

}  // namespace

bool PassPinchedCorner(Rater& rater) {
  const Lines& rows = rater.rows.lines;
  for (int row = 1; row < rater.size - 1; ++row) {
    const Positions trees = rows.Trees(row);
    const Positions north = rows.Trees(row - 1) & ~rows.OpenOrTents(row - 2);
    const Positions south = rows.Trees(row + 1) & ~rows.OpenOrTents(row + 2);
    const Positions west = WithBefore(trees & ~WithBefore(rows.OpenOrTents(row)));
    const Positions east = WithBehind(trees & ~WithBehind(rows.OpenOrTents(row)));
    const Positions pinched = rows.Open(row) & rows.Interior() & (north | south) & (east | west);
    if (pinched == 0) continue;
    rater.Set(rows.axis.At(row, std::countr_zero(pinched)), CELL_GRASS);
    return true;
  }
  return false;
}

bool PassSharedField(Rater& rater) {
  const Lines& rows = rater.rows.lines;
  const auto withoutTent = [&](int row) { return rows.Trees(row) & ~SidesOf(rows, CELL_TENT, row).Any(); };
  Positions above = 0;
  Positions own = withoutTent(0);
  for (int row = 0; row < rater.size; ++row) {
    const Positions below = row < rater.size - 1 ? withoutTent(row + 1) : 0;
    const Sides trees = SidesOf(rows, CELL_TREE, row);
    const Sides tentless{above, WithBehind(own), below, WithBefore(own)};
    const Positions shared = rows.Open(row) & trees.ExactlyTwo() & tentless.AtLeastTwo();
    const bool found = AnyIn(shared, [&](int col) { return SharedAt(rater, rows.axis.At(row, col), trees); });
    if (found) return true;
    above = own;
    own = below;
  }
  return false;
}

bool PassLastTentRow(Rater& rater) {
  return LastTent(rater, rater.rows);
}
bool PassLastTentColumn(Rater& rater) {
  return LastTent(rater, rater.columns);
}

}  // namespace bivouac
