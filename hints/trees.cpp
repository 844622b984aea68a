// Stage 2: what one or two trees can still do.
#include "game/blinking.h"
#include "game/board.h"
#include "hints/frame.h"
#include "hints/hints.h"

namespace bivouac {
namespace {

bool IsOpenOrTent(const Main& main, int cell) {
  return main.Board[cell] == CELL_OPEN || main.Board[cell] == CELL_TENT;
}

constexpr HintRule kCornerOfTwoOptions{
    15, Sound::Hint,
    "All possible tent placements for the blinking Tree, points out that the blinking open field must be "
    "grass! Click HERE to continue..."};

/// A tree with two fields left at a right angle: either tent touches the field between them.
bool CornerOfTwoOptions(Main& main) {
  for (int tree = 0; tree < main.CellCount; ++tree) {
    if (main.Board[tree] != CELL_TREE) continue;
    int open = 0;
    int tents = 0;
    int corner = tree;
    bool upright = false;
    bool level = false;
    ForEachSide(main, tree, [&](int side, int direction) {
      if (main.Board[side] == CELL_TENT) ++tents;
      if (main.Board[side] != CELL_OPEN) return;
      ++open;
      corner += side - tree;
      (direction == NORTH || direction == SOUTH ? upright : level) = true;
    });
    if (open != 2 || tents != 0 || !upright || !level || main.Board[corner] != CELL_OPEN) continue;
    AddBlink(main, tree, CELL_TREE);
    AddBlink(main, corner, -CELL_GRASS);
    ReportFind(main, kCornerOfTwoOptions);
    return true;
  }
  return false;
}

constexpr HintRule kFieldBetweenTrees{
    15, Sound::Hint,
    "None of the two blanking trees can have the blinking open field to place his tent without leaving the "
    "other tree any possibility to place his tent, therefore this field must be grass! Click HERE to "
    "continue..."};

/// An open field with a tree before and behind it in its line. A tent there touches the fields beside both
/// trees, so each could only turn to the field beyond it.
bool FieldBetweenTrees(Main& main, Axis axis) {
  const int last = axis.size - 1;
  for (int line = 0; line <= last; ++line) {
    const auto hasTentBeside = [&](int position) {
      return (line > 0 && main.Board[axis.At(line - 1, position)] == CELL_TENT) ||
             (line < last && main.Board[axis.At(line + 1, position)] == CELL_TENT);
    };
    for (int i = 1; i < last; ++i) {
      const int field = axis.At(line, i);
      const int before = axis.At(line, i - 1);
      const int behind = axis.At(line, i + 1);
      if (main.Board[field] != CELL_OPEN) continue;
      if (main.Board[before] != CELL_TREE || main.Board[behind] != CELL_TREE) continue;
      if (i > 1 && IsOpenOrTent(main, axis.At(line, i - 2))) continue;
      if (hasTentBeside(i - 1)) continue;
      if (i < last - 1 && IsOpenOrTent(main, axis.At(line, i + 2))) continue;
      if (hasTentBeside(i + 1)) continue;
      AddBlink(main, field, -CELL_GRASS);
      AddBlink(main, before, CELL_TREE);
      AddBlink(main, behind, CELL_TREE);
      ReportFind(main, kFieldBetweenTrees);
      return true;
    }
  }
  return false;
}

constexpr HintLineRule kTreesBoundToLine{
    {15, Sound::Hint,
     "All possible tent placements for the blinking Tree(s) in that row, points out that any blinking open "
     "field must be grass! Click HERE to continue..."},
    {15, Sound::Hint,
     "All possible tent placements for the blinking Tree(s) in that column, points out that any blinking "
     "open field must be grass! Click HERE to continue..."}};

/// Trees that can only turn along their line bring all its missing tents, so its other fields are grass.
bool TreesBoundToLine(Main& main, Axis axis) {
  const int last = axis.size - 1;
  for (int line = 0; line <= last; ++line) {
    const int need = ClueOf(main, axis, line);
    const int tents = TentsIn(main.Board, axis, line);
    const Positions open = PositionsOf(main.Board, axis, line, CELL_OPEN);
    const Positions trees = PositionsOf(main.Board, axis, line, CELL_TREE);
    Positions others = open;
    int bound = 0;
    for (int i = 1; i < last; ++i) {
      if (!Has(trees, i) || !Has(open, i - 1) || !Has(open, i + 1)) continue;
      if (line > 0 && IsOpenOrTent(main, axis.At(line - 1, i))) continue;
      if (line < last && IsOpenOrTent(main, axis.At(line + 1, i))) continue;
      ++bound;
      AddBlink(main, axis.At(line, i), CELL_TREE);
      others &= ~(1u << (i - 1) | 1u << (i + 1));
    }
    if (tents < need && bound + tents == need && others != 0) {
      MarkPositions(main, axis, line, others, -CELL_GRASS);
      ReportFind(main, kTreesBoundToLine.Of(axis));
      return true;
    }
    main.BlinkTop = -1;
  }
  return false;
}

}  // namespace

void HintTrees(Main& main) {
  main.BlinkTop = -1;
  const Axis rows = RowsOf(main);
  const Axis columns = ColumnsOf(main);
  const bool found = CornerOfTwoOptions(main) || FieldBetweenTrees(main, rows) ||
                     FieldBetweenTrees(main, columns) || TreesBoundToLine(main, rows) ||
                     TreesBoundToLine(main, columns);
  if (!found) HintPairs(main);
}

}  // namespace bivouac
