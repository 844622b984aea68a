#include "deduction/finds.h"
#include "game/board.h"

namespace bivouac {

bool FindPinched(Lines& lines, Find& find) {
  for (int line = 0; line < lines.Size(); ++line) {
    const Positions trees = lines.Trees(line) & ~(lines.Tents(line - 1) | lines.Tents(line + 1));
    const Positions before = trees & ~WithBefore(lines.OpenOrTents(line));
    const Positions after = trees & ~WithAfter(lines.OpenOrTents(line));
    const Positions pinched = lines.Open(line) & WithBefore(before) & WithAfter(after);
    if (pinched == 0) continue;
    const int position = std::countr_zero(pinched);
    find.Add(lines.axis.At(line, position), Role::Grass);
    find.Add(lines.axis.At(line, position - 1), Role::Tree);
    find.Add(lines.axis.At(line, position + 1), Role::Tree);
    return true;
  }
  return false;
}

bool FindPinchedCorner(Lines& rows, Find& find) {
  for (int row = 1; row < rows.Size() - 1; ++row) {
    const Positions trees = rows.Trees(row);
    const Positions north = rows.Trees(row - 1) & ~rows.OpenOrTents(row - 2);
    const Positions south = rows.Trees(row + 1) & ~rows.OpenOrTents(row + 2);
    const Positions west = WithBefore(trees & ~WithBefore(rows.OpenOrTents(row)));
    const Positions east = WithAfter(trees & ~WithAfter(rows.OpenOrTents(row)));
    const Positions pinched = rows.Open(row) & rows.Interior() & (north | south) & (east | west);
    if (pinched == 0) continue;
    const int col = std::countr_zero(pinched);
    // Of several pairs the first in the order north and east, east and south, south and west, west and north.
    const int first = Has(north & east, col) ? NORTH : Has(east, col) ? EAST : Has(south, col) ? SOUTH : WEST;
    const int second = first % WEST + 1;
    const int field = rows.axis.At(row, col);
    find.Add(field, Role::Grass);
    find.Add(field + StepOf(rows.Size(), first), Role::Tree);
    find.Add(field + StepOf(rows.Size(), second), Role::Tree);
    return true;
  }
  return false;
}

}  // namespace bivouac
