#include "deduction/clusters.h"
#include "deduction/twins.h"
#include "deduction/wings.h"
#include "rating/passes.h"
#include "rating/sweep.h"

namespace bivouac {
namespace {

bool SpareRun(Rater& rater, LineView& view) {
  const Lines& lines = view.lines;
  for (int line = 0; line < rater.size; ++line) {
    const int missing = view.Clue(line) - view.Tents(line);
    if (missing <= 0 || view.Runs(line).Capacity != missing + 1) continue;
    // At most one odd place stays empty. The two around a gap may belong to different runs.
    const Positions odd = view.Runs(line).Odd;
    const Positions gaps = WithBefore(odd) & WithBehind(odd);
    const Positions before = gaps & lines.Open(line - 1);
    const Positions behind = gaps & lines.Open(line + 1);
    if ((before | behind) == 0) continue;
    rater.SetAll(lines, line - 1, before, CELL_GRASS);
    rater.SetAll(lines, line + 1, behind, CELL_GRASS);
    return true;
  }
  return false;
}

bool Twin(Rater& rater, const LineView& view) {
  const auto find = FindTwins(rater.main.Board, view.lines);
  if (!find) return false;
  const bool ring = find->Outcome == TwinOutcome::Ring;
  for (int i = 0; i < find->Count; ++i) {
    rater.Set(find->Cells[static_cast<std::size_t>(i)], ring ? CELL_GRASS : CELL_TENT);
  }
  if (!ring) SweepTentNeighbours(rater);
  return true;
}

}  // namespace

bool PassSpareRunRow(Rater& rater) {
  return SpareRun(rater, rater.rows);
}
bool PassSpareRunColumn(Rater& rater) {
  return SpareRun(rater, rater.columns);
}

bool PassCluster(Rater& rater) {
  rater.main.BlinkTop = -1;
  const auto find = FindCluster(rater.main.Board, rater.rows.lines);
  if (!find) return false;
  for (const int cell : find->Cells) rater.Set(cell, find->Code);
  if (find->Code == CELL_TENT) SweepTentNeighbours(rater);
  return true;
}

bool PassTwinRow(Rater& rater) {
  return Twin(rater, rater.rows);
}
bool PassTwinColumn(Rater& rater) {
  return Twin(rater, rater.columns);
}

bool PassWing(Rater& rater) {
  const auto find = FindWing(rater.main.Board, rater.rows.lines, TwoTreesRule::InAllFormations);
  if (!find) return false;
  for (int i = 0; i < find->Count; ++i) {
    const WingMark& mark = find->Marks[static_cast<std::size_t>(i)];
    const bool isTent = mark.Tile == -CELL_TENT && find->Message != WingMessage::TA;
    if (isTent) rater.Set(mark.Cell, CELL_TENT);
    if (mark.Tile == -CELL_GRASS) rater.Set(mark.Cell, CELL_GRASS);
  }
  SweepTentNeighbours(rater);
  return true;
}

}  // namespace bivouac
