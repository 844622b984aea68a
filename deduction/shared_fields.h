// Open fields that two trees compete for. What follows from one the rater and the hints see differently.
#pragma once

#include "deduction/lines.h"
#include "game/board.h"

namespace bivouac {

/// A tree and its open neighbours.
class Options {
 public:
  Options(const Lines& rows, int tree) : tree_(tree) {
    const int col = tree % rows.Size();
    const Sides open = SidesOf(rows, CELL_OPEN, tree / rows.Size());
    const auto add = [&](Positions positions, int direction) {
      open_ |= (positions >> col & 1u) << direction;
    };
    add(open.North, NORTH);
    add(open.East, EAST);
    add(open.South, SOUTH);
    add(open.West, WEST);
  }

  int Tree() const { return tree_; }
  int Count() const { return std::popcount(open_); }
  /// Whether the neighbour in a direction lies on the board and is open.
  bool operator[](int direction) const { return Has(open_, direction); }

 private:
  int tree_;
  Positions open_ = 0;
};

/// An open field with exactly two trees beside it, neither with a tent. The first has the lower index.
struct SharedField {
  const Array<int>& Board;
  int Size;
  int Cell;
  int ToFirst;  ///< Direction from the field to the first tree, to the second.
  int ToSecond;
  Options First;
  Options Second;

  bool IsInLine() const { return OppositeOf(ToFirst) == ToSecond; }
  /// Of trees that are not in line: whether the second stands south-east of the first, else south-west.
  bool LeansRight() const { return Second.Tree() - First.Tree() > Size; }
  int Step(int direction) const { return StepOf(Size, direction); }
  /// Errors: IndexOutsideArray for a cell off the board.
  bool IsOpen(int cell) const { return Board[cell] == CELL_OPEN; }
};

/// Calls visit(sharedField) for each, in rising order, until one visit returns true. Returns whether one did.
/// Requires: until then, visits leave the board alone.
template <class Visit>
bool AnySharedField(const Lines& rows, Visit visit) {
  const int size = rows.Size();
  Positions above = 0;
  Positions own = TreesWithoutTent(rows, 0);
  for (int row = 0; row < size; ++row) {
    const Positions below = row < size - 1 ? TreesWithoutTent(rows, row + 1) : 0;
    const Sides trees = SidesOf(rows, CELL_TREE, row);
    const Sides tentless{above, WithAfter(own), below, WithBefore(own)};
    const Positions shared = rows.Open(row) & trees.ExactlyTwo() & tentless.AtLeastTwo();
    const bool found = AnyIn(shared, [&](int col) {
      const int cell = rows.CellAt(row, col);
      const int toFirst = Has(trees.North, col) ? NORTH : Has(trees.West, col) ? WEST : EAST;
      const int toSecond = Has(trees.South, col) ? SOUTH : Has(trees.East, col) ? EAST : WEST;
      return visit(SharedField{rows.Board(), size, cell, toFirst, toSecond,
                               Options(rows, cell + StepOf(size, toFirst)),
                               Options(rows, cell + StepOf(size, toSecond))});
    });
    if (found) return true;
    above = own;
    own = below;
  }
  return false;
}

}  // namespace bivouac
