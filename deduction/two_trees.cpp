#include "deduction/finds.h"
#include "game/board.h"

namespace bivouac {
namespace {

/// Adds the first open field of a line between two trees, neither with a tent across the line or anything of
/// `waysOut` on its other side. Returns whether there is one.
bool AddFieldBetween(const Lines& lines, int line, Positions waysOut, Find& find) {
  const Positions trees = lines.Trees(line) & ~(lines.Tents(line - 1) | lines.Tents(line + 1));
  const Positions before = trees & ~WithBefore(waysOut);
  const Positions after = trees & ~WithAfter(waysOut);
  const Positions between = lines.Open(line) & WithBefore(before) & WithAfter(after);
  if (between == 0) return false;
  const int position = std::countr_zero(between);
  find.Add(lines.CellAt(line, position), Role::Grass);
  find.Add(lines.CellAt(line, position - 1), Role::Tree);
  find.Add(lines.CellAt(line, position + 1), Role::Tree);
  return true;
}

}  // namespace

bool FindPinched(Lines& lines, Find& find) {
  for (int line = 0; line < lines.Size(); ++line) {
    if (AddFieldBetween(lines, line, lines.OpenOrTents(line), find)) return true;
  }
  return false;
}

bool FindLastTent(Lines& lines, Find& find) {
  for (int line = 0; line < lines.Size(); ++line) {
    if (lines.Need(line) != lines.TentCount(line) + 1) continue;
    if (!AddFieldBetween(lines, line, lines.Tents(line), find)) continue;
    find.SetLines(line, line);
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
    const int field = rows.CellAt(row, col);
    find.Add(field, Role::Grass);
    find.Add(field + StepOf(rows.Size(), first), Role::Tree);
    find.Add(field + StepOf(rows.Size(), second), Role::Tree);
    return true;
  }
  return false;
}

}  // namespace bivouac
