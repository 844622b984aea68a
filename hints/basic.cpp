// Stage 1: one field, one tree or one line at a time.
#include "deduction/runs.h"
#include "game/blinking.h"
#include "game/board.h"
#include "hints/frame.h"
#include "hints/hints.h"

namespace bivouac {
namespace {

/// The neighbours of a tree that matter, with the direction of the last one of each kind.
struct TreeSides {
  int Open = 0;
  int Tents = 0;
  int OpenDirection = 0;
  int TentDirection = 0;
  int OpenCell = 0;
  int TentCell = 0;
};

TreeSides SidesOf(const Main& main, int tree) {
  TreeSides sides;
  ForEachSide(main, tree, [&](int side, int direction) {
    if (main.Board[side] == CELL_OPEN) {
      ++sides.Open;
      sides.OpenDirection = direction;
      sides.OpenCell = side;
    } else if (main.Board[side] == CELL_TENT) {
      ++sides.Tents;
      sides.TentDirection = direction;
      sides.TentCell = side;
    }
  });
  return sides;
}

int TreesBeside(const Main& main, int cell) {
  int trees = 0;
  ForEachSide(main, cell, [&](int side, int) { trees += main.Board[side] == CELL_TREE ? 1 : 0; });
  return trees;
}

constexpr HintRule kFieldWithoutTree{
    5, Sound::Error, "The blinking field is not next to a tree, it must be grass! Click HERE to continue..."};

bool FieldWithoutTree(Main& main) {
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (main.Board[cell] == CELL_OPEN && !TouchesTree(main, cell)) AddBlink(main, cell, -CELL_GRASS);
  }
  if (main.BlinkTop == -1) return false;
  ReportFind(main, kFieldWithoutTree);
  return true;
}

constexpr HintRule kTentWithOpenFields{
    10, Sound::Giggle,
    "All open fields surrounding the blinking tent must be grass! Click HERE to continue..."};

bool TentWithOpenFields(Main& main) {
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (main.Board[cell] != CELL_TENT || !HasOpenNeighbour(main, cell)) continue;
    AddBlink(main, cell, CELL_TENT);
    ReportFind(main, kTentWithOpenFields);
    return true;
  }
  return false;
}

constexpr HintRule kTreeWithOneField{
    15, Sound::Hint, "The blinking tree has only one possible field for a tent! Click HERE to continue..."};

bool TreeWithOneField(Main& main) {
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (main.Board[cell] != CELL_TREE) continue;
    const TreeSides sides = SidesOf(main, cell);
    if (sides.Open != 1 || sides.Tents != 0) continue;
    AddBlink(main, cell, CELL_TREE);
    ReportFind(main, kTreeWithOneField);
    return true;
  }
  return false;
}

constexpr HintRule kFieldOfSettledTree{
    15, Sound::Hint,
    "The blinking field is only located next to a tree that already has his tent, so this field must be "
    "grass! Click HERE to continue..."};

/// The tent must be this tree's for sure. A field at a right angle to it would touch it.
bool FieldOfSettledTree(Main& main) {
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (main.Board[cell] != CELL_TREE) continue;
    const TreeSides sides = SidesOf(main, cell);
    if (sides.Open != 1 || sides.Tents != 1) continue;
    if (TreesBeside(main, sides.TentCell) != 1 || TreesBeside(main, sides.OpenCell) != 1) continue;
    const bool opposite = (sides.OpenDirection - sides.TentDirection) % 2 == 0;
    if (!opposite) continue;
    AddBlink(main, sides.OpenCell, -CELL_GRASS);
    ReportFind(main, kFieldOfSettledTree);
    return true;
  }
  return false;
}

constexpr HintLineRule kLineComplete{
    {15, Sound::Giggle,
     "All tents are placed in the row, so all blinking open fields must contain grass! Click HERE to "
     "continue..."},
    {15, Sound::Giggle,
     "All tents are placed in the column, so all blinking open fields must contain grass! Click HERE to "
     "continue..."}};

bool LineComplete(Main& main, Axis axis) {
  for (int line = 0; line < axis.size; ++line) {
    if (ClueOf(main, axis, line) != TentsIn(main.Board, axis, line)) continue;
    const Positions open = PositionsOf(main.Board, axis, line, CELL_OPEN);
    if (open == 0) continue;
    MarkPositions(main, axis, line, open, -CELL_GRASS);
    ReportFind(main, kLineComplete.Of(axis));
    return true;
  }
  return false;
}

constexpr HintLineRule kRunsFull{
    {20, Sound::Hint,
     "All possible placements in the row points out that all blinking fields must contain a tent! Click "
     "HERE to continue..."},
    {20, Sound::Hint,
     "All possible placements in the column points out that all blinking fields must contain a tent! Click "
     "HERE to continue..."}};

constexpr HintLineRule kRunsBlockNeighbours{
    {20, Sound::Hint,
     "All possible placements of tents in the row  with the blinking tents points out that all blinking "
     "open fields in the neighbour rows must contain grass! Click HERE to continue..."},
    {20, Sound::Hint,
     "All possible placements of tents in the column with the blinking tents points out that all blinking "
     "open fields in the neighbour columns must contain grass! Click HERE to continue..."}};

/// A line that needs all the tents that its runs can hold. A run of odd length then has its tents at fixed
/// places; one of even length blocks the fields beside it whichever way it fills.
bool RunCapacity(Main& main, Axis axis) {
  for (int line = 0; line < axis.size; ++line) {
    const int need = ClueOf(main, axis, line) - TentsIn(main.Board, axis, line);
    if (need <= 0) continue;
    const LineRuns runs = CutRuns(PositionsOf(main.Board, axis, line, CELL_OPEN));
    if (need != runs.Capacity) continue;

    if (runs.Odd != 0) {
      MarkPositions(main, axis, line, runs.Odd, -CELL_TENT);
      ReportFind(main, kRunsFull.Of(axis));
      return true;
    }
    for (int i = 0; i < axis.size; ++i) {
      if (!Has(runs.Even, i)) continue;
      for (const int beside : {line - 1, line + 1}) {
        if (beside < 0 || beside >= axis.size) continue;
        const int cell = axis.At(beside, i);
        if (main.Board[cell] == CELL_OPEN) AddBlink(main, cell, -CELL_GRASS);
      }
    }
    if (main.BlinkTop == -1) continue;
    MarkPositions(main, axis, line, runs.Even, -CELL_TENT);
    ReportFind(main, kRunsBlockNeighbours.Of(axis));
    return true;
  }
  return false;
}

}  // namespace

void HintBasic(Main& main) {
  const Axis rows = RowsOf(main);
  const Axis columns = ColumnsOf(main);
  const bool found = FieldWithoutTree(main) || TentWithOpenFields(main) || TreeWithOneField(main) ||
                     FieldOfSettledTree(main) || LineComplete(main, rows) || LineComplete(main, columns) ||
                     RunCapacity(main, rows) || RunCapacity(main, columns);
  if (!found) HintTrees(main);
}

}  // namespace bivouac
