#include "rating/passes.h"
#include "rating/sweep.h"

namespace bivouac {
namespace {

/// The neighbour of a cell on the one side where there is something.
int OnlySide(const Rater& rater, int row, int col, const Sides& sides) {
  const int direction = Has(sides.North, col)   ? NORTH
                        : Has(sides.East, col)  ? EAST
                        : Has(sides.South, col) ? SOUTH
                                                : WEST;
  return row * rater.size + col + rater.Step(direction);
}

bool HasOneTree(const Rater& rater, int cell) {
  const Sides trees = SidesOf(rater.rows.lines, CELL_TREE, cell / rater.size);
  return Has(trees.ExactlyOne(), cell % rater.size);
}

bool Complete(Rater& rater, const LineView& view) {
  for (int line = 0; line < rater.size; ++line) {
    const Positions open = view.lines.Open(line);
    if (open == 0 || view.Tents(line) != view.Need(line)) continue;
    rater.SetAll(view.lines, line, open, CELL_GRASS);
    return true;
  }
  return false;
}

bool Runs(Rater& rater, LineView& view) {
  const Lines& lines = view.lines;
  for (int line = 0; line < rater.size; ++line) {
    const int missing = view.Need(line) - view.Tents(line);
    if (missing <= 0 || view.Runs(line).Capacity != missing) continue;
    const LineRuns& runs = view.Runs(line);
    if (runs.Odd != 0) {
      rater.SetAll(lines, line, runs.Odd, CELL_TENT);
      SweepTentNeighbours(rater);
      return true;
    }
    const Positions before = runs.Even & lines.Open(line - 1);
    const Positions behind = runs.Even & lines.Open(line + 1);
    if ((before | behind) == 0) continue;
    rater.SetAll(lines, line - 1, before, CELL_GRASS);
    rater.SetAll(lines, line + 1, behind, CELL_GRASS);
    return true;
  }
  return false;
}

}  // namespace

bool PassLoneOption(Rater& rater) {
  const Lines& rows = rater.rows.lines;
  for (int row = 0; row < rater.size; ++row) {
    const Sides open = SidesOf(rows, CELL_OPEN, row);
    const Positions lone = rows.Trees(row) & open.ExactlyOne() & ~SidesOf(rows, CELL_TENT, row).Any();
    if (lone == 0) continue;
    rater.Set(OnlySide(rater, row, std::countr_zero(lone), open), CELL_TENT);
    rater.main.BlinkTop = 0;
    SweepTentNeighbours(rater);
    return true;
  }
  return false;
}

bool PassServedNeighbour(Rater& rater) {
  const Lines& rows = rater.rows.lines;
  for (int row = 0; row < rater.size; ++row) {
    const Sides open = SidesOf(rows, CELL_OPEN, row);
    const Sides tents = SidesOf(rows, CELL_TENT, row);
    const Positions served = rows.Trees(row) & open.ExactlyOne() & tents.ExactlyOne();
    const bool found = AnyIn(served, [&](int col) {
      const int field = OnlySide(rater, row, col, open);
      if (!HasOneTree(rater, field) || !HasOneTree(rater, OnlySide(rater, row, col, tents))) return false;
      rater.Set(field, CELL_GRASS);
      return true;
    });
    if (found) return true;
  }
  return false;
}

bool PassRowComplete(Rater& rater) {
  return Complete(rater, rater.rows);
}
bool PassColumnComplete(Rater& rater) {
  return Complete(rater, rater.columns);
}

bool PassRowRuns(Rater& rater) {
  return Runs(rater, rater.rows);
}
bool PassColumnRuns(Rater& rater) {
  return Runs(rater, rater.columns);
}

}  // namespace bivouac
