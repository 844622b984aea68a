#include "deduction/finds.h"
#include "game/board.h"

namespace bivouac {
namespace {

/// The neighbour of a cell on the one side where there is something.
int OnlySide(const Lines& rows, int row, int col, const Sides& sides) {
  const int direction = Has(sides.North, col)   ? NORTH
                        : Has(sides.East, col)  ? EAST
                        : Has(sides.South, col) ? SOUTH
                                                : WEST;
  return rows.CellAt(row, col) + StepOf(rows.Size(), direction);
}

bool HasOneTree(const Lines& rows, int cell) {
  const Sides trees = SidesOf(rows, CELL_TREE, cell / rows.Size());
  return Has(trees.ExactlyOne(), cell % rows.Size());
}

}  // namespace

bool FindAwayFromTrees(Lines& rows, Find& find) {
  for (int row = 0; row < rows.Size(); ++row) {
    ForEachIn(rows.Open(row) & ~SidesOf(rows, CELL_TREE, row).Any(),
              [&](int col) { find.Add(rows.CellAt(row, col), Role::Grass); });
  }
  return !find.Fields.IsEmpty();
}

bool FindTentNeighbours(Lines& rows, Find& find) {
  for (int row = 0; row < rows.Size(); ++row) {
    const Positions tents = rows.Tents(row) & Around(rows, CELL_OPEN, row);
    if (tents == 0) continue;
    const Positions tent = tents & -tents;
    find.Add(rows.CellAt(row, std::countr_zero(tents)), Role::StandingTent);
    for (const int near : {row - 1, row, row + 1}) {
      ForEachIn(rows.Open(near) & (WithBefore(tent) | tent | WithAfter(tent)),
                [&](int col) { find.Add(rows.CellAt(near, col), Role::Grass); });
    }
    return true;
  }
  return false;
}

bool FindLoneOption(Lines& rows, Find& find) {
  for (int row = 0; row < rows.Size(); ++row) {
    const Positions tentless = TreesWithoutTent(rows, row);
    if (tentless == 0) continue;
    const Sides open = SidesOf(rows, CELL_OPEN, row);
    const Positions lone = tentless & open.ExactlyOne();
    if (lone == 0) continue;
    const int col = std::countr_zero(lone);
    find.Add(rows.CellAt(row, col), Role::Tree);
    find.Add(OnlySide(rows, row, col, open), Role::Tent);
    return true;
  }
  return false;
}

bool FindServedNeighbour(Lines& rows, ServedFrom from, Find& find) {
  for (int row = 0; row < rows.Size(); ++row) {
    const Sides open = SidesOf(rows, CELL_OPEN, row);
    const Positions withOption = rows.Trees(row) & open.ExactlyOne();
    if (withOption == 0) continue;
    const Sides tents = SidesOf(rows, CELL_TENT, row);
    const Positions served = withOption & tents.ExactlyOne();
    if (served == 0) continue;
    const bool found = AnyIn(served, [&](int col) {
      const int tree = rows.CellAt(row, col);
      const int field = OnlySide(rows, row, col, open);
      const int tent = OnlySide(rows, row, col, tents);
      if (!HasOneTree(rows, field) || !HasOneTree(rows, tent)) return false;
      if (from == ServedFrom::Opposite && field + tent != 2 * tree) return false;
      find.Add(tree, Role::Tree);
      find.Add(tent, Role::StandingTent);
      find.Add(field, Role::Grass);
      return true;
    });
    if (found) return true;
  }
  return false;
}

bool FindCornerField(Lines& rows, Find& find) {
  for (int row = 0; row < rows.Size(); ++row) {
    const Positions tentless = TreesWithoutTent(rows, row);
    if (tentless == 0) continue;
    const Sides open = SidesOf(rows, CELL_OPEN, row);
    const Positions trees = tentless & open.ExactlyTwo();
    if (trees == 0) continue;
    const Positions above = rows.Open(row - 1);
    const Positions below = rows.Open(row + 1);
    const Positions northEast = open.North & open.East & WithAfter(above);
    const Positions northWest = open.North & open.West & WithBefore(above);
    const Positions southEast = open.South & open.East & WithAfter(below);
    const Positions southWest = open.South & open.West & WithBefore(below);
    const Positions corners = trees & (northEast | northWest | southEast | southWest);
    if (corners == 0) continue;
    const int col = std::countr_zero(corners);
    const int fieldRow = row + (Has(open.North, col) ? -1 : 1);
    const int fieldCol = col + (Has(open.East, col) ? 1 : -1);
    find.Add(rows.CellAt(row, col), Role::Tree);
    find.Add(rows.CellAt(fieldRow, fieldCol), Role::Grass);
    return true;
  }
  return false;
}

}  // namespace bivouac
