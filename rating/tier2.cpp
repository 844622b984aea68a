#include "rating/passes.h"

namespace bivouac {
namespace {

bool Pinched(Rater& rater, const LineView& view) {
  const Lines& lines = view.lines;
  for (int line = 0; line < rater.size; ++line) {
    // Trees that need the field between them. What is open across would touch a tent on that field.
    const Positions trees = lines.Trees(line) & ~(lines.Tents(line - 1) | lines.Tents(line + 1));
    const Positions before = trees & ~WithBefore(lines.OpenOrTents(line));
    const Positions behind = trees & ~WithBehind(lines.OpenOrTents(line));
    const Positions pinched = lines.Open(line) & WithBefore(before) & WithBehind(behind);
    if (pinched == 0) continue;
    rater.Set(lines.axis.At(line, std::countr_zero(pinched)), CELL_GRASS);
    return true;
  }
  return false;
}

bool Claimed(Rater& rater, const LineView& view) {
  const Lines& lines = view.lines;
  for (int line = 0; line < rater.size; ++line) {
    const Positions open = lines.Open(line);
    const Positions across = lines.OpenOrTents(line - 1) | lines.OpenOrTents(line + 1);
    const Positions claimants = lines.Trees(line) & WithBefore(open) & WithBehind(open) & ~across;
    // Two claimants that share the field between them count twice.
    if (claimants == 0 || view.Need(line) != view.Tents(line) + std::popcount(claimants)) continue;
    const Positions unclaimed = open & ~(WithBefore(claimants) | WithBehind(claimants));
    if (unclaimed == 0) continue;
    rater.SetAll(lines, line, unclaimed, CELL_GRASS);
    return true;
  }
  return false;
}

}  // namespace

bool PassCornerField(Rater& rater) {
  const Lines& rows = rater.rows.lines;
  for (int row = 0; row < rater.size; ++row) {
    const Sides open = SidesOf(rows, CELL_OPEN, row);
    const Positions trees = rows.Trees(row) & open.ExactlyTwo() & ~SidesOf(rows, CELL_TENT, row).Any();
    if (trees == 0) continue;
    const Positions above = rows.Open(row - 1);
    const Positions below = rows.Open(row + 1);
    const Positions northEast = open.North & open.East & WithBehind(above);
    const Positions northWest = open.North & open.West & WithBefore(above);
    const Positions southEast = open.South & open.East & WithBehind(below);
    const Positions southWest = open.South & open.West & WithBefore(below);
    const Positions corners = trees & (northEast | northWest | southEast | southWest);
    if (corners == 0) continue;
    const int col = std::countr_zero(corners);
    const int fieldRow = row + (Has(open.North, col) ? -1 : 1);
    const int fieldCol = col + (Has(open.East, col) ? 1 : -1);
    rater.Set(rows.axis.At(fieldRow, fieldCol), CELL_GRASS);
    return true;
  }
  return false;
}

bool PassPinchedRow(Rater& rater) {
  return Pinched(rater, rater.rows);
}
bool PassPinchedColumn(Rater& rater) {
  return Pinched(rater, rater.columns);
}

bool PassClaimedRow(Rater& rater) {
  return Claimed(rater, rater.rows);
}
bool PassClaimedColumn(Rater& rater) {
  return Claimed(rater, rater.columns);
}

}  // namespace bivouac
