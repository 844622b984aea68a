#include "rating/passes.h"
#include "rating/sweep.h"

namespace bivouac {
namespace {

/// Tents on the open fields of a line beside the trees of its neighbour. Returns whether there were any.
/// Errors: IndexOutsideArray beyond the last line if a tree asks for a field there.
bool TentsBeside(Rater& rater, const Lines& lines, int treeLine, int tentLine) {
  if (tentLine == rater.size && lines.Trees(treeLine) != 0) ThrowIndexOutsideArray();
  const Positions fields = lines.Trees(treeLine) & lines.Open(tentLine);
  rater.SetAll(lines, tentLine, fields, CELL_TENT);
  return fields != 0;
}

bool TreeSupply(Rater& rater, const LineView& view) {
  const Lines& lines = view.lines;
  const auto treesIn = [&](int line) {
    if (line == rater.size) ThrowIndexOutsideArray();
    return std::popcount(lines.Trees(line));
  };
  int balance = 0;
  for (int line = 0; line < rater.size; ++line) {
    balance += treesIn(line) - view.Need(line);
    bool found = false;
    if (balance < 0 && treesIn(line + 1) == -balance) {
      found = TentsBeside(rater, lines, line + 1, line);
    } else if (balance > 0 && treesIn(line) == balance) {
      found = TentsBeside(rater, lines, line, line + 1);
    }
    if (!found) continue;
    SweepTentNeighbours(rater);
    return true;
  }
  return false;
}

}  // namespace

bool PassTreeSupplyRow(Rater& rater) {
  return TreeSupply(rater, rater.rows);
}
bool PassTreeSupplyColumn(Rater& rater) {
  return TreeSupply(rater, rater.columns);
}

}  // namespace bivouac
